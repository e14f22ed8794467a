// What one server datagram says: the SensorData record.
//
// Positions and velocities stand as the server sends them (its own frame: left goal at x = -52.5
// for both teams, metres, metres per cycle); angles are radians in (-pi, pi].
#pragma once

#include <array>

#include "coordinates.h"
#include "protocol.h"

namespace vok {

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
