// The things on the field: goals, the ball, the players, and what is known of each.
//
// Positions are in metres in the field frame (coordinates.h), velocities in metres per cycle,
// directions in radians. Ages count the cycles since a sensor last set the data; every age and
// "cycles since" counter stops at `NEVER`.
#pragma once

#include <iosfwd>

#include "asyncinfo.h"
#include "coordinates.h"
#include "objectstate.h"
#include "pitch.h"
#include "sensordata.h"

namespace vok {

constexpr int NEVER = 32000;

/// Counts a counter of cycles up, not beyond `NEVER`.
template <typename Counter>
void ageOneCycle(Counter& counter) {
  if (counter < NEVER) ++counter;
}

struct WPlayer;

struct WObject {
  Vector2d pos;
  int age = NEVER;
  WObjectState state = UNSAFE;

  WObject() = default;
  explicit WObject(Vector2d pos) : pos(pos) {}

  double distTo(const Vector2d& point) const { return (point - pos).getLength(); }
  /// Distance to the segment; no number when its ends are the same.
  double distToLine(const Vector2d& source, const Vector2d& target) const;
  /// Inside the band of width `d` around the segment, as far as it lies within +-`alpha` (radians)
  /// seen from `source`, or in the disc of diameter `d` around `target`.
  bool inCorridor(const Vector2d& source, const Vector2d& target, double d, Angle alpha) const;
  bool inField(double security) const { return vok::inField(pos, security); }
  bool inOurPenaltyArea(double security) const { return vok::inOurPenaltyArea(pos, security); }
  bool inOtherPenaltyArea(double security) const { return vok::inOtherPenaltyArea(pos, security); }
};

struct WMovedObject : WObject {
  Vector2d v;
  double decay = 0;  ///< velocity factor a cycle
  double vmax = 0;   ///< metres per cycle
  double size = 0;   ///< radius, metres
  int coneTime = 0;  ///< cycles that a search for it has run

  WMovedObject() = default;
  WMovedObject(Vector2d pos, Vector2d v) : WObject(pos), v(v) {}

  /// Adds an acceleration; the speed stays within `vmax`.
  void acc(const Vector2d& acceleration);
  /// One step of the simulator: moves, then slows down.
  void simulate();
  /// Velocity from the changes of distance (metres) and direction (radians) per cycle as seen from
  /// `relObject`.
  void calcVelocity(const WMovedObject& relObject, double distChange, double dirChange);
  /// Position from the rounded distance and the direction in which the observer `my` sees it.
  void setPos(const SensorObject& object, const WPlayer& my);
};

struct WBall : WMovedObject {
  WBall() : WBall({}, {}) {}
  WBall(Vector2d pos, Vector2d v);

  /// True when the ball rolls over our goal line within `distance` metres of the goal's centre.
  bool willCrossOurGoalLine(double distance) const;
};

/// One heterogeneous type; `state` is its id once announced, -1 before. Units as of `PlayerType`
/// (sensordata.h); `inertiaFactor` is its inertia moment.
struct WPlayerType {
  int state = -1;
  double playerSpeedMax = 0;
  double playerDecay = 0;
  double playerSize = 0;
  double staminaIncMax = 0;
  double inertiaFactor = 0;
  double dashPowerRate = 0;
  double kickableMargin = 0;
  double kickRand = 0;
  double extraStamina = 0;
  double effortMin = 0;
  double effortMax = 0;

  /// The server's default type, not announced.
  static WPlayerType fromDefaults();
};

std::ostream& operator<<(std::ostream& out, const WPlayerType& type);

/// The top speed that a full dash can reach, at most `speedMax` (metres per cycle).
double reachableSpeed(double speedMax, double dashPowerRate, double decay);

struct WPlayer : WMovedObject {
  int bodyAge = NEVER;
  Angle bodyDir;
  Angle faceDir;  ///< body plus neck; of a global view the neck alone
  Angle pointDir;
  Angle headAngle;  ///< neck, relative to the body
  int number = -1;
  goalie_player isGoalie = GOALIE_UNKNOWN;
  int tacticalNo = -1;  ///< place in the formation, 1 is the goalie
  int cyclesSinceTackle = NEVER;
  double stamina;         ///< in units of dash power, up to `STAMINA_MAX`
  double effort = 1.0;    ///< factor of a dash, between `effortMin` and `effortMax`
  double recovery = 1.0;  ///< factor of `staminaIncMax`
  // What the type determines; the units are those of `WPlayerType`.
  double staminaIncMax;
  double inertiaFactor;
  double dashPowerRate;
  double kickableMargin;
  double kickRand;
  double extraStamina = 0;
  double effortMin;
  double effortMax;
  /// The acceleration that it is assumed to keep up by dashing, metres per cycle squared; of a
  /// player's view only.
  Vector2d push;
  int type = -1;  ///< heterogeneous type, -1 when unknown

  WPlayer() : WPlayer({}, {}) {}
  /// A player of the server's default type.
  WPlayer(Vector2d pos, Vector2d v);

  /// Takes over the physical parameters of a type.
  void setType(const WPlayerType& physics);

  Angle bodyAngleTo(const Vector2d& point) const;
  Angle faceAngleTo(const Vector2d& point) const;
  /// Distance from centre to centre within which the ball can be kicked, metres.
  double kickRange() const;
  bool ballKickable(const WBall& ball) const { return distTo(ball.pos) <= kickRange(); }
  /// True when a catch in the direction `catchAngle` (relative to the body) reaches the ball. A
  /// ball behind our goal line counts as in our penalty area.
  bool ballCatchable(const WBall& ball, Angle catchAngle) const;
  /// Effective power rate of a kick, by where the ball lies.
  double kickPowerRate(const WBall& ball) const;
  /// Factor of a turn at the present speed.
  double inertiaMoment() const;
  /// Probability that a tackle succeeds.
  double tackleProb(const WBall& ball) const;
  bool isCoach() const { return number == 0; }

  // The simulator's rules for one cycle, before `simulate`. Powers in the server's scale.

  /// Speeds up along the body, with as much of the power as the stamina pays for.
  void dash(double power);
  /// Turns body and face; the moment (radians) is cut to what the server allows.
  void turn(double moment);
  /// Speeds up a ball within reach, in a direction from the body (radians).
  void kick(WBall& ball, double power, double direction) const;
  /// The stamina of a cycle comes back, and effort and recovery follow it.
  void recover();

  /// Takes over what the observer `my` sees of this player.
  void setBySensorData(const SensorPlayer& player, const WPlayer& my, WObjectState confidence,
                       play_mode playMode);
};

/// The last own command as the prediction needs it.
struct WAction {
  CycleCommand command = NO_COMMAND;
  double moment = 0;  ///< radians: of a turn, or the direction of a kick or catch from the body
  double power = 0;   ///< of a kick, dash or tackle, in the server's scale
  Vector2d pos;       ///< of a move, metres, own frame

  void store(const CycleAction& action);
};

}  // namespace vok
