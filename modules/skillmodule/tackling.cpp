#include "tackling.h"

#include <cmath>

#include "constants.h"

namespace vok {

namespace {

/// Radians from the body. Current servers do not let a goalie catch behind himself.
constexpr double CATCH_SIDE = PI / 2;

/// Metres beside a post that still count as our goal.
constexpr double BESIDE_POST = 1;

bool mayCatch(const Worldmodel& world) {
  return world.my.isGoalie == GOALIE_TRUE && world.playMode == PLAY_MODE_PLAY_ON &&
         world.cyclesSinceCatch > CATCH_BAN_CYCLES && world.my.cyclesSinceTackle > TACKLE_CYCLES;
}

}  // namespace

Command tackle(const WPlayer& player, const WBall& ball, double probability) {
  if (player.cyclesSinceTackle <= TACKLE_CYCLES) return {};
  if (player.tackleProb(ball) < probability) return {};
  WBall tackled = ball;
  tackled.acc(polar(TACKLE_POWER_RATE * MAXPOWER, player.bodyDir));
  if (tackled.willCrossOurGoalLine(GOAL_WIDTH / 2 + BESIDE_POST)) return {};
  return Command::tackle(MAXPOWER);
}

Command catchBall(const Worldmodel& world) {
  if (!mayCatch(world)) return {};
  const Angle direction = world.my.bodyAngleTo(world.ball.pos);
  if (std::fabs(direction) > CATCH_SIDE) return {};
  if (!world.my.ballCatchable(world.ball, direction)) return {};
  return Command::catchAt(direction);
}

}  // namespace vok
