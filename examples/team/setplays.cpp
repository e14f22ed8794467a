// Between the referee's call and the kick.
#include <VOK/constants.h>
#include <VOK/playmodes.h>

#include "player.h"

using namespace vok;

namespace {

constexpr long PREPARE = 25;         ///< cycles that the team gets to take its places
constexpr long HURRY = 50;           ///< cycles after which the ball is kicked without a good pass
constexpr long GIVE_UP = 40;         ///< cycles that the named kicker gets to come to the ball
constexpr int KNOWN = 30;            ///< cycles since a team-mate was seen who can take the kick
constexpr double BEHIND_BALL = 0.6;  ///< metres
constexpr double TO_BALL = 70;       ///< dash power

/// Whom the coach named; the goalie where the rules or the place make it his; else, and when he
/// does not come (he may have been sent off), the nearest.
int taker(const Player& player) {
  const Worldmodel& world = player.world;
  const play_mode mode = player.mode();
  const bool caught = mode == PLAY_MODE_FREE_KICK_US && world.ball.inOurPenaltyArea(0);
  if ((mode == PLAY_MODE_GOAL_KICK_US || caught) && world.ourGoalieNo != -1)
    return world.ourGoalieNo;
  const int nearest = world.ourTeamClosestTo(world.ball.pos, KNOWN, 1);
  const int named = player.memory.kicker;
  if (named == -1 || player.memory.modeCycles >= GIVE_UP) return nearest;
  return named;
}

Command takeKick(Player& player) {
  const Worldmodel& world = player.world;
  const long cycles = player.memory.modeCycles;
  if (!world.my.ballKickable(world.ball)) {
    const Vector2d behind = world.ball.pos - Vector2d(BEHIND_BALL, 0);
    return dashTo(world.my, behind, 0.3, TO_BALL);
  }
  if (cycles < PREPARE) return turnTo(world.my, {HALF_LENGTH, 0}, toRadians(10));
  const GoalShot shot = player.goalShots.ourEval(&world);
  if (shot.score >= player.goalShots.score_GOOD) {
    return planKick(world.my, world.ball, shot.target, shot.speed, 1).command;
  }
  const Command pass = passBall(player);
  if (!pass.isNone()) return pass;
  // Nobody is free or in sight: look around, then kick it ahead.
  if (cycles < HURRY) return Command::turn(turnMoment(world.my, toRadians(60)));
  const Vector2d ahead(world.ball.pos.x + 30, world.ball.pos.y > 0 ? 10 : -10);
  return planKick(world.my, world.ball, ahead, BALL_SPEED_MAX, 1).command;
}

}  // namespace

Command setPlay(Player& player) {
  const bool ours = playmodeTeam(player.mode()) == TEAM_US && isSetPlay(player.mode());
  if (ours && taker(player) == player.me().number) return takeKick(player);
  return player.isGoalie() ? guardGoal(player) : holdPlace(player);
}
