// The goalie: between ball and goal, out to a ball that he gets first, and the catch.
#include <VOK/constants.h>

#include <algorithm>

#include "player.h"

using namespace vok;

namespace {

const Vector2d GOAL(-HALF_LENGTH, 0);
constexpr double NEAREST_TO_GOAL = 1.2;  ///< metres in front of the goal, with the ball near
constexpr double FARTHEST_OUT = 8;       ///< with the ball far away
constexpr double SHARE = 0.14;           ///< of the way to the ball
constexpr double AREA_MARGIN = 0.5;      ///< metres inside the penalty area for a catch

/// Where the goal is covered best: on the line from its centre to the ball, the farther out the
/// farther the ball is.
Vector2d coveringPlace(const Worldmodel& world) {
  const Vector2d way = world.ball.pos - GOAL;
  const double out = std::clamp(SHARE * way.getLength(), NEAREST_TO_GOAL, FARTHEST_OUT);
  Vector2d place = GOAL + Vector2d(way).stretch(out);
  place.x = std::max(place.x, -HALF_LENGTH + 0.8);
  return place;
}

bool firstInArea(const Worldmodel& world) {
  const Interception mine = interception(world.my, world.ball);
  if (!mine.found() || !inOurPenaltyArea(mine.place, AREA_MARGIN)) return false;
  for (const WPlayer& opponent : world.otherTeam) {
    if (opponent.age > 20 || opponent.distTo(world.ball.pos) > 40) continue;
    Interceptor how;
    how.limit = mine.cycles + 1;
    how.ageAllowance = 2;
    if (interception(opponent, world.ball, how).cycles < mine.cycles) return false;
  }
  // A team-mate who has it under control is left alone.
  const int mate = world.ourTeamClosestTo(world.ball.pos, 5, 1);
  return mate == -1 || mate == world.my.number ||
         world.ball.willCrossOurGoalLine(GOAL_WIDTH / 2 + 1) ||
         !world.ourTeam[mate].ballKickable(world.ball);
}

}  // namespace

Command guardGoal(Player& player) {
  const Worldmodel& world = player.world;
  // A ball that came from a team-mate may be caught by nobody, but a goal would be worse.
  const bool intoGoal = world.ball.willCrossOurGoalLine(GOAL_WIDTH / 2 + 1);
  if (player.memory.lastTouch != TEAM_US || intoGoal) {
    const Command caught = player.skills.catchBall();
    if (!caught.isNone()) return caught;
  }
  if (world.my.ballKickable(world.ball)) return handleBall(player);
  if (intoGoal || firstInArea(world)) {
    const Command way = intercept(world.my, world.ball);
    if (!way.isNone()) return way;
  }
  const Command step = dashTo(world.my, coveringPlace(world), 0.5, MAXPOWER);
  return step.isNone() ? turnTo(world.my, world.ball.pos) : step;
}
