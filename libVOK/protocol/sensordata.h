// What one server datagram says: the SensorData record.
//
// Positions and velocities stand as the server sends them: in its own frame, in which the left goal
// has the negative x for both teams, in metres and metres per cycle. Angles are radians in
// (-pi, pi].
#pragma once

#include <array>

#include "coordinates.h"
#include "protocol.h"

namespace vok {

/// The marker of an angle that a message did not give (radians otherwise).
constexpr double NO_ANGLE = -10000;

/// The marker of a distance that a view of low quality does not tell (metres otherwise).
constexpr double NO_DISTANCE = -1;

/// An object of the relative view: metres, radians from the face direction, changes per cycle.
struct SensorObject {
  bool valid = false;
  double dist = 0;
  double dir = 0;
  double dist_change = 0;
  double dir_change = 0;
  bool changes = false;  ///< the two changes were told
};

struct SensorPlayer : SensorObject {
  team_number team = TEAM_UNKNOWN;
  int number = -1;  ///< shirt number; -1 when the player is too far away to tell
  goalie_player goalie = GOALIE_UNKNOWN;
  double face_dir = NO_ANGLE;  ///< from the observer's face direction, as the next two
  double body_dir = NO_ANGLE;
  double pointto_dir = NO_ANGLE;  ///< of the arm; `NO_ANGLE` when it is down or cannot be seen
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

/// An object of the global view: server frame, metres, metres per cycle, without noise.
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
  double face_dir = NO_ANGLE;     ///< neck, from the body direction
  double body_dir = NO_ANGLE;     ///< in the server's frame
  double pointto_dir = NO_ANGLE;  ///< of the arm; `NO_ANGLE` when it is down
  bool tackle = false;
};

struct ExactGoal : ExactObject {
  goal_type which = GOAL_UNKNOWN;
  team_number team = TEAM_UNKNOWN;
};

/// One heterogeneous player type as announced. Names and units are those of the server parameters
/// (constants.h).
struct PlayerType {
  int player_type = -1;         ///< id
  double player_speed_max = 0;  ///< metres per cycle
  double stamina_inc_max = 0;   ///< per cycle
  double player_decay = 0;      ///< velocity factor per cycle
  double inertia_moment = 0;
  double dash_power_rate = 0;
  double player_size = 0;      ///< radius, metres
  double kickable_margin = 0;  ///< metres
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
  // To "(team_graphic (COLUMN ROW ...))".
  TILE_TAKEN,
  TILE_TOO_LATE,  ///< a tile is for the time before a kick-off
  TILE_REFUSED,
  TEXT_NOT_TERMINATED  ///< the server wants a NUL byte at the end of every text
};

/// A refusal does not say what it refuses: answers come in the order of the requests.
struct Answer {
  AnswerKind kind = AnswerKind::NONE;
  int number = -1;  ///< of `TYPE_GIVEN`: the player, of `TILE_TAKEN`: the column; unchecked
  int type = -1;    ///< of `TYPE_GIVEN`: its new type, of `TILE_TAKEN`: the row; unchecked
};

/// Room for a heard text or name with its terminator.
using HeardText = std::array<char, 513>;

/// One parsed datagram. Only the group of its `type` is meaningful. Plain data, copied whole.
struct SensorData {
  sensor_data_type type = SENSOR_TYPE_STRANGE;
  long time = -1;  ///< server cycle; -1 for messages without a time

  PlayerType playerType;  // player_type

  // see: the relative view, by `which` but for the players, who come in the order of the text
  SensorObject ball;
  std::array<SensorGoal, NUM_GOALS> goal;
  std::array<SensorPlayer, 21> player;
  std::array<SensorFlag, NUM_FLAGS> flag;
  std::array<SensorLine, NUM_LINES> line;
  view_width see_view_width = VIEW_WIDTH_NONE;  ///< as the latest body sense told; none before

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
  HeardText message{};                      ///< the text without its quotes, NUL-terminated
  play_mode mode = PLAY_MODE_UNKNOWN;       ///< called by the referee
  playing_side penaltySide = SIDE_UNKNOWN;  ///< at whose goal a penalty shoot-out takes place
  int score = 0;                 ///< goals of the team that scored, with a mode GOAL only
  double sender_dir = NO_ANGLE;  ///< radians from the face direction
  HeardText sender_name{};       ///< the speaker's team; empty when it was not told
  int sender_num = -1;           ///< the speaker's shirt number

  // sense_body; the counts are those of all commands that the server has executed
  view_width my_view_width = VIEW_WIDTH_NONE;
  view_quality my_view_quality = VIEW_QUALITY_LOW;
  double stamina = 0;      ///< 0 to `STAMINA_MAX`
  double effort = 0;       ///< factor of the dash power
  double speed = 0;        ///< metres per cycle
  double speed_angle = 0;  ///< of the movement, from the face direction
  double head_angle = 0;   ///< of the neck, from the body direction
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
  int arm_movable = 0;              ///< cycles until the arm can be moved
  int arm_expires = 0;              ///< cycles until the arm drops
  int attentionTo = 0;              ///< shirt number of the player that is listened to; 0 for none
  bool attentionToOurTeam = false;  ///< that one is of our team
  int tackle_expires = 0;           ///< cycles until the tackle ends
  Vector2d arm_target;              ///< distance in metres (x) and direction in degrees (y)

  // see_global, ok look: the global view
  ExactObject exactball;
  std::array<ExactPlayer, 22> exactplayer;
  std::array<ExactGoal, NUM_GOALS> exactgoal;

  Answer answer;       // ok, warning, error
  bool think = false;  ///< "(think)", synchronous mode
};

}  // namespace vok
