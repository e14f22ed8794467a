// What one server datagram says: the shared enumerations and the SensorData record.
//
// Positions and velocities stand as the server sends them (its own frame: left goal at x = -52.5
// for both teams, metres, metres per cycle); angles are radians in (-pi, pi].
#pragma once

#include <array>

#include "coordinates.h"

namespace vok {

/// Play modes; US and THEM are relative to the client's own side. The values are shared with the
/// players.
enum play_mode {
  PLAY_MODE_UNKNOWN = -1,
  PLAY_MODE_BEFORE_KICK_OFF = 0,
  PLAY_MODE_TIME_OVER = 1,
  PLAY_MODE_HALF_TIME = 2,
  PLAY_MODE_TIME_EXTENDED = 3,
  PLAY_MODE_PAUSE = 4,
  PLAY_MODE_PLAY_ON = 5,
  PLAY_MODE_DROP_BALL = 6,
  PLAY_MODE_HUMAN_JUDGE = 7,
  PLAY_MODE_KICK_OFF_US = 8,
  PLAY_MODE_KICK_OFF_THEM = 9,
  PLAY_MODE_KICK_IN_US = 10,
  PLAY_MODE_KICK_IN_THEM = 11,
  PLAY_MODE_FREE_KICK_US = 12,
  PLAY_MODE_FREE_KICK_THEM = 13,
  PLAY_MODE_CORNER_KICK_US = 14,
  PLAY_MODE_CORNER_KICK_THEM = 15,
  PLAY_MODE_GOAL_KICK_US = 16,
  PLAY_MODE_GOAL_KICK_THEM = 17,
  PLAY_MODE_PENALTY_KICK_US = 18,
  PLAY_MODE_PENALTY_KICK_THEM = 19,
  PLAY_MODE_GOAL_US = 20,
  PLAY_MODE_GOAL_THEM = 21,
  PLAY_MODE_GOALIE_CATCH_US = 22,
  PLAY_MODE_GOALIE_CATCH_THEM = 23,
  PLAY_MODE_OFFSIDE_US = 24,
  PLAY_MODE_OFFSIDE_THEM = 25,
  PLAY_MODE_BACKPASS_US = 26,
  PLAY_MODE_BACKPASS_THEM = 27,
  PLAY_MODE_FREEKICK_FAULT_US = 28,
  PLAY_MODE_FREEKICK_FAULT_THEM = 29,
  PLAY_MODE_FOUL_CHARGE_US = 30,
  PLAY_MODE_FOUL_CHARGE_THEM = 31,
  PLAY_MODE_FOUL_PUSH_US = 32,
  PLAY_MODE_FOUL_PUSH_THEM = 33,
  PLAY_MODE_FOUL_MULTIPLE_ATTACK_US = 34,
  PLAY_MODE_FOUL_MULTIPLE_ATTACK_THEM = 35,
  PLAY_MODE_FOUL_BALLOUT_US = 36,
  PLAY_MODE_FOUL_BALLOUT_THEM = 37,
  PLAY_MODE_PENALTY_SETUP_US = 38,
  PLAY_MODE_PENALTY_SETUP_THEM = 39,
  PLAY_MODE_PENALTY_READY_US = 40,
  PLAY_MODE_PENALTY_READY_THEM = 41,
  PLAY_MODE_PENALTY_TAKEN_US = 42,
  PLAY_MODE_PENALTY_TAKEN_THEM = 43,
  PLAY_MODE_PENALTY_MISS_US = 44,
  PLAY_MODE_PENALTY_MISS_THEM = 45,
  PLAY_MODE_PENALTY_SCORE_US = 46,
  PLAY_MODE_PENALTY_SCORE_THEM = 47
};

enum playing_side { SIDE_UNKNOWN = -1, SIDE_LEFT = 0, SIDE_RIGHT = 1 };

enum client_type {
  CLIENT_UNKNOWN = -1,
  CLIENT_GOALIE = 0,
  CLIENT_FIELDPLAYER = 1,
  CLIENT_ONLINECOACH = 2,
  CLIENT_TRAINCOACH = 3
};

enum sensor_data_type {
  SENSOR_TYPE_SEE = 0,
  SENSOR_TYPE_HEAR = 1,
  SENSOR_TYPE_SENSE_BODY = 2,
  SENSOR_TYPE_EXACT = 3,
  SENSOR_TYPE_OK = 4,
  SENSOR_TYPE_ERROR = 5,
  SENSOR_TYPE_WARNING = 6,
  SENSOR_TYPE_STRANGE = 7,
  SENSOR_TYPE_PLAYER_TYPE = 8,
  SENSOR_TYPE_PLAYER_CHANGED = 9,
  SENSOR_TYPE_CLANG_VER = 10
};

enum sender_type {
  SENDER_SELF = 0,
  SENDER_REFEREE = 1,
  SENDER_DIR = 2,     ///< a voice from a direction, team unknown
  SENDER_PLAYER = 3,  ///< a player named with team and number
  SENDER_PLAYER_US = 4,
  SENDER_PLAYER_THEM = 5,
  SENDER_ONLINECOACH = 6,
  SENDER_COACH = 7  ///< the trainer
};

enum team_number { TEAM_UNKNOWN = -1, TEAM_US = 0, TEAM_THEM = 1 };
enum goalie_player { GOALIE_UNKNOWN = -1, GOALIE_TRUE = 0, GOALIE_FALSE = 1 };
enum view_width {
  VIEW_WIDTH_NARROW = 0,
  VIEW_WIDTH_NORMAL = 1,
  VIEW_WIDTH_WIDE = 2,
  VIEW_WIDTH_NONE = 3
};
enum view_quality { VIEW_QUALITY_LOW = 0, VIEW_QUALITY_HIGH = 1 };
enum CoachMsgType {
  CMT_FREEFORM = 0,
  CMT_META = 1,
  CMT_INFO = 2,
  CMT_ADVICE = 3,
  CMT_DEFINE = 4,
  CMT_NONE = 5
};
enum goal_type { GOAL_UNKNOWN = -1, GOAL_LEFT = 0, GOAL_RIGHT = 1, NUM_GOALS = 2 };
enum line_type {
  LINE_UNKNOWN = -1,
  LINE_TOP = 0,
  LINE_LEFT = 1,
  LINE_RIGHT = 2,
  LINE_BOTTOM = 3,
  NUM_LINES = 4
};

/// Landmarks; their field positions are `flag_x` and `flag_y`.
enum flag_type {
  FLAG_UNKNOWN = -1,
  FLAG_TOP_LEFT = 0,
  FLAG_TOP_CENTER = 1,
  FLAG_TOP_RIGHT = 2,
  FLAG_BOTTOM_LEFT = 3,
  FLAG_BOTTOM_CENTER = 4,
  FLAG_BOTTOM_RIGHT = 5,
  FLAG_P_LEFT_TOP = 6,
  FLAG_P_LEFT_CENTER = 7,
  FLAG_P_LEFT_BOTTOM = 8,
  FLAG_P_RIGHT_TOP = 9,
  FLAG_P_RIGHT_CENTER = 10,
  FLAG_P_RIGHT_BOTTOM = 11,
  FLAG_CENTER = 12,
  FLAG_GOAL_LEFT_TOP = 13,
  FLAG_GOAL_LEFT_BOTTOM = 14,
  FLAG_GOAL_RIGHT_TOP = 15,
  FLAG_GOAL_RIGHT_BOTTOM = 16,
  FLAG_TOP_LEFT_50 = 17,
  FLAG_TOP_LEFT_40 = 18,
  FLAG_TOP_LEFT_30 = 19,
  FLAG_TOP_LEFT_20 = 20,
  FLAG_TOP_LEFT_10 = 21,
  FLAG_TOP_0 = 22,
  FLAG_TOP_RIGHT_10 = 23,
  FLAG_TOP_RIGHT_20 = 24,
  FLAG_TOP_RIGHT_30 = 25,
  FLAG_TOP_RIGHT_40 = 26,
  FLAG_TOP_RIGHT_50 = 27,
  FLAG_BOTTOM_LEFT_50 = 28,
  FLAG_BOTTOM_LEFT_40 = 29,
  FLAG_BOTTOM_LEFT_30 = 30,
  FLAG_BOTTOM_LEFT_20 = 31,
  FLAG_BOTTOM_LEFT_10 = 32,
  FLAG_BOTTOM_0 = 33,
  FLAG_BOTTOM_RIGHT_10 = 34,
  FLAG_BOTTOM_RIGHT_20 = 35,
  FLAG_BOTTOM_RIGHT_30 = 36,
  FLAG_BOTTOM_RIGHT_40 = 37,
  FLAG_BOTTOM_RIGHT_50 = 38,
  FLAG_LEFT_TOP_30 = 39,
  FLAG_LEFT_TOP_20 = 40,
  FLAG_LEFT_TOP_10 = 41,
  FLAG_LEFT_0 = 42,
  FLAG_LEFT_BOTTOM_10 = 43,
  FLAG_LEFT_BOTTOM_20 = 44,
  FLAG_LEFT_BOTTOM_30 = 45,
  FLAG_RIGHT_TOP_30 = 46,
  FLAG_RIGHT_TOP_20 = 47,
  FLAG_RIGHT_TOP_10 = 48,
  FLAG_RIGHT_0 = 49,
  FLAG_RIGHT_BOTTOM_10 = 50,
  FLAG_RIGHT_BOTTOM_20 = 51,
  FLAG_RIGHT_BOTTOM_30 = 52,
  NUM_FLAGS = 53
};

/// The commands that a client can have sent in a cycle; the values are shared with the players.
enum CycleCommand {
  NO_COMMAND = 0,
  KICK_COMMAND = 1,
  DASH_COMMAND = 2,
  TURN_COMMAND = 3,
  CATCH_COMMAND = 4,
  MOVE_COMMAND = 5,
  CHANGE_VIEW_COMMAND = 6,
  POINTTO_COMMAND = 7,
  ATTENTIONTO_COMMAND = 8,
  TACKLE_COMMAND = 9
};

/// The marker of an angle that a message did not give (radians otherwise).
constexpr double NO_ANGLE = -10000;

/// An object of the relative view: metres, radians from the face direction, changes per cycle.
struct SensorObject {
  bool valid = false;
  double dist = 0;
  double dir = 0;
  double dist_change = 0;
  double dir_change = 0;
};

struct SensorPlayer : SensorObject {
  team_number team = TEAM_UNKNOWN;
  int number = -1;
  goalie_player goalie = GOALIE_UNKNOWN;
  double face_dir = NO_ANGLE;
  double body_dir = NO_ANGLE;
  double pointto_dir = NO_ANGLE;
  bool tackle = false;
};

struct SensorGoal : SensorObject {
  goal_type which = GOAL_UNKNOWN;
  team_number team = TEAM_UNKNOWN;
};

struct SensorFlag : SensorObject {
  flag_type which = FLAG_UNKNOWN;
};

struct SensorLine : SensorObject {
  line_type which = LINE_UNKNOWN;
};

/// An object of the global view: server frame, metres, metres per cycle.
struct ExactObject {
  bool valid = false;
  double x = 0;
  double y = 0;
  double x_vel = 0;
  double y_vel = 0;
};

struct ExactPlayer : ExactObject {
  team_number team = TEAM_UNKNOWN;
  int number = -1;
  goalie_player goalie = GOALIE_UNKNOWN;
  double face_dir = NO_ANGLE;     ///< neck, relative to the body, radians
  double body_dir = NO_ANGLE;     ///< radians
  double pointto_dir = NO_ANGLE;  ///< radians; `NO_ANGLE` when the arm is down
  bool tackle = false;
};

struct ExactGoal : ExactObject {
  goal_type which = GOAL_UNKNOWN;
  team_number team = TEAM_UNKNOWN;
};

/// One heterogeneous player type as announced.
struct PlayerType {
  int player_type = -1;  ///< id
  double player_speed_max = 0;
  double stamina_inc_max = 0;
  double player_decay = 0;
  double inertia_moment = 0;
  double dash_power_rate = 0;
  double player_size = 0;
  double kickable_margin = 0;
  double kick_rand = 0;
  double extra_stamina = 0;
  double effort_max = 0;
  double effort_min = 0;
};

/// What the server says to a command of ours, as far as a client acts on it. Most of these answer
/// "(change_player_type NUMBER TYPE)".
enum class AnswerKind {
  NONE,
  TYPE_GIVEN,
  TYPE_FULL,  ///< as many players as may have the type
  NO_SUCH_TYPE,
  NO_SUCH_PLAYER,
  IN_PLAY,      ///< changes are for interruptions
  IN_SHOOTOUT,  ///< and not for penalty shoot-outs, which end the match
  NO_SUBSTITUTION_LEFT,
  TEXT_NOT_TERMINATED  ///< the server wants a NUL byte at the end of every text
};

/// A refusal does not say what it refuses: answers come in the order of the requests.
struct Answer {
  AnswerKind kind = AnswerKind::NONE;
  int number = -1;  ///< of `TYPE_GIVEN`: the player, unchecked
  int type = -1;    ///< of `TYPE_GIVEN`: its new type, unchecked
};

/// Room for a heard text or name with its terminator.
using HeardText = std::array<char, 513>;

/// One parsed datagram. Only the group of its `type` is meaningful. Plain data, copied whole.
struct SensorData {
  sensor_data_type type = SENSOR_TYPE_STRANGE;
  long time = -1;  ///< server cycle; -1 for messages without a time

  PlayerType playerType;  // player_type

  // see: the relative view
  SensorObject ball;
  std::array<SensorGoal, NUM_GOALS> goal;
  std::array<SensorPlayer, 21> player;
  std::array<SensorFlag, NUM_FLAGS> flag;
  std::array<SensorLine, NUM_LINES> line;
  view_width see_view_width = VIEW_WIDTH_NONE;

  // change_player_type: shirt number and new type; clang: lowest and highest version
  int number = -1;
  bool ourTeamChanged = false;  ///< the new type was named behind a comma
  int heteroType = -1;
  /// change_player_type: the new type, comma or not. The server names it for our own players only
  /// and writes no comma, so this tells our changes from the opponents'.
  int announcedType = -1;

  // hear
  sender_type sender = SENDER_SELF;
  CoachMsgType coachMsgType = CMT_NONE;
  HeardText message{};
  play_mode mode = PLAY_MODE_UNKNOWN;
  playing_side penaltySide = SIDE_UNKNOWN;
  int score = 0;
  double sender_dir = NO_ANGLE;
  HeardText sender_name{};
  int sender_num = -1;

  // sense_body
  view_width my_view_width = VIEW_WIDTH_NONE;
  view_quality my_view_quality = VIEW_QUALITY_LOW;
  double stamina = 0;
  double effort = 0;
  double speed = 0;
  double speed_angle = 0;
  double head_angle = 0;
  int kick_count = 0;
  int dash_count = 0;
  int turn_count = 0;
  int say_count = 0;
  int turn_neck_count = 0;
  int catch_count = 0;
  int move_count = 0;
  int change_view_count = 0;
  int point_to_count = 0;
  int attention_to_count = 0;
  int tackle_count = 0;
  int arm_movable = 0;
  int arm_expires = 0;
  int attentionTo = 0;
  bool attentionToOurTeam = false;
  int tackle_expires = 0;
  Vector2d arm_target;

  // see_global, ok look: the global view
  ExactObject exactball;
  std::array<ExactPlayer, 22> exactplayer;
  std::array<ExactGoal, NUM_GOALS> exactgoal;

  Answer answer;       // ok, warning, error
  bool think = false;  ///< "(think)", synchronous mode
};

}  // namespace vok
