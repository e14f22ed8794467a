// When and where a player gets the rolling ball.
#pragma once

#include "command.h"

namespace vok {

/// How a player is taken to be that is to reach the ball.
struct Interceptor {
  int limit = 60;  ///< cycles that are looked ahead
  /// Cycles: a player that was not seen for some time may have run towards the ball since, for at
  /// most so long. 0 takes him to be where he was last seen, which is cautious for a team-mate.
  int ageAllowance = 0;
  /// Metres from the player's centre to the ball's; 0 stands for his kick range, a little inside.
  double reach = 0;
};

struct Interception {
  int cycles = NEVER;  ///< from now; 0 when the ball is within reach, `NEVER` for not in time
  Vector2d place;      ///< of the ball then, metres in the field frame; at the end without one

  bool found() const { return cycles < NEVER; }
};

/// The earliest cycle at which the player, by its own type, has the rolling ball within reach. A
/// ball that leaves the field is nobody's any more. A player whose body was not seen for long is
/// taken to face the way.
Interception interception(const WPlayer& player, const WBall& ball, const Interceptor& how = {});

/// The command on the way to the ball: full dashes to the place of the earliest interception, and
/// in its last cycle the dash that brings the ball beside the body, without a collision. None while
/// the ball comes by itself or lies within reach.
Command intercept(const WPlayer& player, const WBall& ball);

}  // namespace vok
