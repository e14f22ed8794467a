// The server's parameters and the geometry of the field.
//
// Process-wide variables with the server's defaults. Only the check-in writes them, with the values
// that the server sends (in metres, seconds, degrees and cycles, as the server uses them). They are
// not reset between matches.
#pragma once

#include <array>

#include "pitch.h"
#include "protocol.h"

namespace vok {

// Ports, speech and coach language
inline int PORT = 6000;          ///< of players
inline int COACH_PORT = 6001;    ///< of the trainer
inline int OLCOACH_PORT = 6002;  ///< of the online coach
inline int CLANG_ADVICE_WIN = 1;
inline int CLANG_DEFINE_WIN = 1;
inline int CLANG_DEL_WIN = 1;
inline int CLANG_INFO_WIN = 1;
inline int CLANG_MESS_DELAY = 50;
inline int CLANG_MESS_PER_CYCLE = 1;
inline int CLANG_META_WIN = 1;
inline int CLANG_RULE_WIN = 1;
inline int CLANG_WIN_SIZE = 300;
inline double HEAR_DECAY = 2.0;
inline double HEAR_INC = 1.0;
inline double HEAR_MAX = 2.0;
inline int SAY_COACH_CNT_MAX = 128;   ///< messages per match
inline int SAY_COACH_MSG_SIZE = 128;  ///< characters
inline int SAY_MSG_SIZE = 512;        ///< characters
inline double AUDIO_CUT_DIST = 50.0;

// Match and clock
inline int DROP_BALL_TIME = 200;   ///< cycles
inline int HALF_TIME = 300;        ///< seconds
inline int RECV_STEP = 10;         ///< ms
inline int SEND_STEP = 150;        ///< ms
inline int SEND_VI_STEP = 100;     ///< ms
inline int SENSE_BODY_STEP = 100;  ///< ms
inline int SIMULATOR_STEP = 100;   ///< ms
inline int SLOW_DOWN_FACTOR = 1;
inline bool FORBID_KICK_OFF_OFFSIDE = true;
inline bool SYNCH_MODE = false;  ///< the server waits for "(done)"
inline bool USE_OFFSIDE = true;
inline double CKICK_MARGIN = 1.0;
inline double GOAL_WIDTH = 2 * GOAL_HALF_WIDTH;          ///< metres
inline double OFFSIDE_KICK_MARGIN = FREE_KICK_DISTANCE;  ///< metres
inline int HALF_TIME_IN_CYCLES = 0;                      ///< from the defaults, see ConstantsInit
inline double OFFSIDE_ACTIVE_AREA = 2.5;                 ///< metres

// Penalty shoot-out
inline int PENALTY_BEFORE_SETUP_WAIT = 30;
inline int PENALTY_MAX_EXTRA_KICKS = 10;
inline int PENALTY_NR_KICKS = 5;
inline int PENALTY_READY_WAIT = 50;
inline int PENALTY_SETUP_WAIT = 100;
inline int PENALTY_TAKEN_WAIT = 100;
inline bool PENALTY_ALLOW_MULT_KICKS = false;
inline bool PENALTY_COACH_MOVES_PLAYERS = true;
inline bool PENALTY_RANDOM_WINNER = false;
inline double PENALTY_DIST_X = 11.0;
inline double PENALTY_MAX_GOALIE_DIST_X = 4.0;

// Ball and kicking
inline double BACCEL_MAX = 2.7;   ///< metres per cycle
inline double BALL_DECAY = 0.94;  ///< velocity factor per cycle
inline double BALL_RAND = 0.05;
inline double BALL_SIZE = 0.085;     ///< radius, metres
inline double BALL_SPEED_MAX = 2.7;  ///< metres per cycle
inline double BALL_WEIGHT = 0.2;
inline double KICK_POWER_RATE = 0.027;
inline double KICK_RAND = 0.0;
inline double KICKABLE_MARGIN = 0.7;  ///< metres

// Player
inline double DASH_POWER_RATE = 0.006;
inline double EFFORT_DEC = 0.005;
inline double EFFORT_DEC_THR = 0.3;
inline double EFFORT_INC = 0.01;
inline double EFFORT_INC_THR = 0.6;
inline double EFFORT_MIN = 0.6;
inline double INERTIA_MOMENT = 5.0;
inline double PLAYER_ACCEL_MAX = 1.0;
inline double PLAYER_DECAY = 0.4;  ///< velocity factor per cycle
inline double PLAYER_RAND = 0.1;
inline double PLAYER_SIZE = 0.3;       ///< radius, metres
inline double PLAYER_SPEED_MAX = 1.0;  ///< metres per cycle
inline double PLAYER_WEIGHT = 60.0;
inline double RECOVER_DEC = 0.002;
inline double RECOVER_DEC_THR = 0.3;
inline double RECOVER_INIT = 1.0;
inline double RECOVER_MIN = 0.5;
inline double STAMINA_INC_MAX = 45.0;
inline double STAMINA_MAX = 4000.0;
inline double EFFORT_MAX = 1.0;

// Command ranges
inline double MAXMOMENT = 180.0;      ///< degrees
inline double MAXNECKANG = 90.0;      ///< degrees
inline double MAXNECKMOMENT = 180.0;  ///< degrees
inline double MAXPOWER = 100.0;
inline double MINMOMENT = -180.0;      ///< degrees
inline double MINNECKANG = -90.0;      ///< degrees
inline double MINNECKMOMENT = -180.0;  ///< degrees
inline double MINPOWER = -100.0;

// Catching, tackling, pointing and seeing
inline int CATCH_BAN_CYCLES = 5;  ///< cycles
inline int GOALIE_MAX_MOVES = 2;
inline int POINTTO_BAN_CYCLES = 5;  ///< cycles
inline int POINTTO_DURATION = 20;   ///< cycles
inline int TACKLE_CYCLES = 10;      ///< cycles
inline double CATCH_PROBABILITY = 1.0;
inline double CATCHABLE_AREA_L = 2.0;  ///< metres
inline double CATCHABLE_AREA_W = 1.0;  ///< metres
inline double TACKLE_BACK_DIST = 0.5;
inline double TACKLE_DIST = 2.5;
inline int TACKLE_EXP = 6;
inline double TACKLE_POWER_RATE = 0.027;
inline double TACKLE_WIDTH = 1.25;
inline double VISIBLE_ANGLE = 90.0;    ///< degrees
inline double VISIBLE_DISTANCE = 3.0;  ///< metres
inline double QUANTIZE_STEP = 0.1;     ///< of the logarithm of distances to moving objects
inline double QUANTIZE_STEP_L = 0.01;  ///< of the logarithm of distances to landmarks

// Wind
inline double WIND_ANGLE = 0.0;
inline double WIND_DIR = 0.0;  ///< degrees
inline double WIND_FORCE = 0.0;
inline double WIND_RAND = 0.0;

/// How many heterogeneous player types there are, and the ranges from which the server draws their
/// values; all zero until the server sends them.
struct PlayerParams {
  int player_types = 0;
  int subs_max = 0;
  double pt_max = 0;
  double player_speed_max_delta_min = 0;
  double player_speed_max_delta_max = 0;
  double stamina_inc_max_delta_factor = 0;
  double new_stamina_inc_max_delta_factor = 0;
  double player_decay_delta_min = 0;
  double player_decay_delta_max = 0;
  double inertia_moment_delta_factor = 0;
  double dash_power_rate_delta_min = 0;
  double dash_power_rate_delta_max = 0;
  double new_dash_power_rate_delta_min = 0;
  double new_dash_power_rate_delta_max = 0;
  double player_size_delta_factor = 0;
  double kickable_margin_delta_min = 0;
  double kickable_margin_delta_max = 0;
  double kick_rand_delta_factor = 0;
  double extra_stamina_delta_min = 0;
  double extra_stamina_delta_max = 0;
  double effort_max_delta_factor = 0;
  double effort_min_delta_factor = 0;
};

inline PlayerParams playerParams;

/// The two counts of the player parameters as sizes: clamped to 0..1000.
int numPlayerTypes();
int numSubsMax();

// The places of goals and flags (landmarks.h), by kind.
inline std::array<double, NUM_GOALS> goal_x{};
inline std::array<double, NUM_GOALS> goal_y{};
inline std::array<double, NUM_FLAGS> flag_x{};
inline std::array<double, NUM_FLAGS> flag_y{};

/// Computes `HALF_TIME_IN_CYCLES` and the positions from the defaults, before `main`. It stands in
/// the header so that the linker cannot leave it out.
struct ConstantsInit {
  ConstantsInit();
};

inline const ConstantsInit constantsInit;

}  // namespace vok
