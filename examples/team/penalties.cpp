// The shoot-out. Both teams shoot at one goal, which may be the one that we defend in the match:
// all places here are for a goal at positive x and turned round for the other.
#include <VOK/constants.h>

#include <algorithm>
#include <cmath>

#include "player.h"

using namespace vok;

namespace {

constexpr double SHOT_RANGE = 14;     ///< metres from the goal at which the taker shoots
constexpr double CLOSE_GOALIE = 4.5;  ///< metres to a goalie who comes out at which he shoots, too
constexpr double CORNER = 1.0;        ///< metres inside the post that is aimed at
constexpr double GOALIE_LINE = 2.0;   ///< metres in front of the goal where the goalie waits
constexpr double WAITING_CIRCLE = 6;  ///< metres around the centre spot for all others

/// 1 when the goal is the one that we attack in the match, else -1.
double goalSign(const Player& player) {
  return player.world.penaltySide == player.comm.getMySide() ? -1 : 1;
}

/// Everybody shoots once before anybody shoots again: from the highest number down, the goalie
/// last.
int taker(const Player& player) {
  const int turn = (std::max(player.memory.ourPenalties, 1) - 1) % LAST_SHIRT;
  return LAST_SHIRT - turn;
}

Command orWait(const Command& command) {
  return command.isNone() ? Command::turn(0) : command;
}

Command shootAt(const Player& player, double sign) {
  const Worldmodel& world = player.world;
  const WPlayer* goalie =
      isShirtNumber(world.otherGoalieNo) ? &world.otherTeam[world.otherGoalieNo] : nullptr;
  const double side = goalie != nullptr && goalie->age < 20 && goalie->pos.y > 0 ? -1 : 1;
  const Vector2d corner(sign * HALF_LENGTH, side * (GOAL_WIDTH / 2 - CORNER));
  return planKick(world.my, world.ball, corner, BALL_SPEED_MAX, 2).command;
}

Command takePenalty(const Player& player, double sign) {
  const Worldmodel& world = player.world;
  const Vector2d goal(sign * HALF_LENGTH, 0);
  if (!world.my.ballKickable(world.ball)) return orWait(intercept(world.my, world.ball));
  const double goalie = isShirtNumber(world.otherGoalieNo)
                            ? world.otherTeam[world.otherGoalieNo].distTo(world.ball.pos)
                            : 100;
  if (world.my.distTo(goal) < SHOT_RANGE || goalie < CLOSE_GOALIE)
    return orWait(shootAt(player, sign));
  const Command ahead =
      dribble(world.my, world.ball, (goal - world.my.pos).getAngle(), world.otherTeam).command;
  return orWait(ahead.isNone() ? shootAt(player, sign) : ahead);
}

Command goToBall(const Player& player, double sign) {
  const Worldmodel& world = player.world;
  const Vector2d behind = world.ball.pos - Vector2d(sign * 0.7, 0);
  const Command way = dashTo(world.my, behind, 0.3, 60);
  return orWait(way.isNone() ? turnTo(world.my, world.ball.pos) : way);
}

Command keepGoal(const Player& player, double sign) {
  const Worldmodel& world = player.world;
  if (player.mode() == PLAY_MODE_PENALTY_TAKEN_THEM) {
    const Angle direction = world.my.bodyAngleTo(world.ball.pos);
    const bool near = world.my.distTo(world.ball.pos) < 0.9 * CATCHABLE_AREA_L;
    if (near && world.cyclesSinceCatch > CATCH_BAN_CYCLES) return Command::catchAt(direction);
    const Interception mine = interception(world.my, world.ball);
    const int shooter = world.otherTeamClosestTo(world.ball.pos, 10, 1);
    const int theirs =
        shooter == -1 ? NEVER : interception(world.otherTeam[shooter], world.ball).cycles;
    if (mine.found() && mine.cycles <= theirs) return orWait(intercept(world.my, world.ball));
  }
  const Vector2d goal(sign * HALF_LENGTH, 0);
  const Vector2d way = world.ball.pos - goal;
  const double out = std::min(GOALIE_LINE, way.getLength());
  const Vector2d place = goal + Vector2d(way).stretch(out);
  const Command step = dashTo(world.my, place, 0.5, MAXPOWER);
  return orWait(step.isNone() ? turnTo(world.my, world.ball.pos) : step);
}

Command waitInCircle(const Player& player) {
  const double angle = toRadians(30) * player.me().number;
  Vector2d place;
  place.setRadAng(WAITING_CIRCLE, angle);
  return orWait(dashTo(player.me(), place, 1, 60));
}

}  // namespace

bool isPenalty(play_mode mode) {
  return mode >= PLAY_MODE_PENALTY_SETUP_US && mode <= PLAY_MODE_PENALTY_SCORE_THEM;
}

Command penalty(const Player& player) {
  const double sign = goalSign(player);
  const int number = player.me().number;
  switch (player.mode()) {
    case PLAY_MODE_PENALTY_SETUP_US:
      return number == taker(player) ? goToBall(player, sign) : waitInCircle(player);
    case PLAY_MODE_PENALTY_READY_US:
    case PLAY_MODE_PENALTY_TAKEN_US:
      return number == taker(player) ? takePenalty(player, sign) : waitInCircle(player);
    case PLAY_MODE_PENALTY_SETUP_THEM:
    case PLAY_MODE_PENALTY_READY_THEM:
    case PLAY_MODE_PENALTY_TAKEN_THEM:
      return player.isGoalie() ? keepGoal(player, sign) : waitInCircle(player);
    default:
      return waitInCircle(player);
  }
}
