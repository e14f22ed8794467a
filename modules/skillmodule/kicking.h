// Kicks: one to three of them to a place, with a wanted speed; stopping the ball.
//
// One kick changes the ball's velocity by at most what power and the ball's place beside the body
// allow (`WPlayer::kickPowerRate`). A fast ball in a bad place therefore needs a kick or two that
// put it where the last one has its full effect. Metres, metres per cycle, field frame.
#pragma once

#include "command.h"

namespace vok {

/// The speed with which the ball has to start to come over `distance` with `endSpeed` left. May be
/// more than the ball can have.
double startSpeed(double distance, double endSpeed);

/// Cycles that the ball takes over a distance; `NEVER` when it stops before.
int rollingCycles(double distance, double startSpeed);

struct KickPlan {
  int kicks = 0;     ///< the command's and those that follow it; 0 when the ball is out of reach
  double speed = 0;  ///< metres per cycle, with which the ball then leaves towards the place
  Command command;   ///< the first of the kicks
};

/// The way to kick the ball towards a place with a wanted start speed, in at most `maxKicks` (three
/// are the most that are tried): what misses the speed least, where each further kick has to gain a
/// quarter of a metre per cycle.
KickPlan planKick(const WPlayer& player, const WBall& ball, const Vector2d& place, double speed,
                  int maxKicks = 3);

/// Takes the speed out of the ball, and keeps it within reach but clear of the body as far as one
/// kick can. None when it is out of reach.
Command stopBall(const WPlayer& player, const WBall& ball);

/// The kick after which the ball moves with `velocity` before it slows down, or as near to it as
/// one kick comes. None when the ball is out of reach.
Command kickTo(const WPlayer& player, const WBall& ball, const Vector2d& velocity);

}  // namespace vok
