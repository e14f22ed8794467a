// A player's skills on its own world: what movement.h, interception.h, kicking.h, dribbling.h and
// tackling.h offer, with the world's player, ball and opponents, and with what a match's stamina
// allows.
#pragma once

#include "dribbling.h"
#include "interception.h"
#include "kicking.h"
#include "movement.h"
#include "tackling.h"
#include "worldmodel.h"

namespace vok {

class AdvSkills {
 public:
  /// Reads the configuration. `world` is not owned; a coach has no skills.
  explicit AdvSkills(const Worldmodel& world);

  /// Once a cycle, after the world's update: counts the stamina that has come back.
  void feedbackWorld();

  // Movement. `reach` in metres: nearer than this the place is reached.

  /// Runs to a place at full power.
  Command runTo(const Vector2d& place, double reach) const;
  /// Goes to a place with the power that lasts until the end of the half.
  Command walkTo(const Vector2d& place, double reach) const;
  Command turnTo(const Vector2d& point) const;
  /// In how many cycles `runTo` is there; `NEVER` beyond a hundred.
  int cyclesTo(const Vector2d& place, double reach) const;

  // Getting the ball.

  Interception interception() const;  ///< ours
  Command intercept() const;
  /// Cycles until the first opponent has the ball within reach, as it rolls now; opponents not seen
  /// for more than `maxAge` cycles do not count. `NEVER` when none gets it.
  int cyclesToOpponent(int maxAge = 10) const;
  Command tackle(double probability) const;
  Command catchBall() const;

  // With the ball within reach.

  /// Kicks so that the ball comes to the place with `endSpeed` left, by as many kicks as the
  /// opponents leave time for. What it plans is what `planKick` tells.
  KickPlan passTo(const Vector2d& place, double endSpeed) const;
  /// The same with a start speed; `BALL_SPEED_MAX` for a shot.
  KickPlan kickTo(const Vector2d& place, double startSpeed) const;
  Command stopBall() const;
  Dribble dribble(Angle direction, int maxDashes = 5) const;

  /// Stamina that may still be spent in this half before effort and recovery fall, in units of dash
  /// power: what is there and what can still come back.
  double energyLeft() const;
  /// What the server still gives back in this half.
  double staminaCapacity() const { return capacity_; }

 private:
  int cyclesLeft() const;

  const Worldmodel& world_;
  double fullCapacity_;  ///< configured: no parameter of protocol 9 tells it
  double capacity_;
  double oldStamina_;
  long oldTime_;
};

}  // namespace vok
