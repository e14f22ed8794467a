// Play on: who goes to the ball, and what is done with it.
//
// With the ball every possibility is weighed by one number: the chance to keep the ball times what
// the ball is worth to us where it then is, less the chance to lose it times what it is worth to
// the opponents there. A shot comes first where it is likely enough to be a goal.
#include <VOK/constants.h>

#include <algorithm>
#include <array>
#include <cmath>

#include "player.h"

using namespace vok;

namespace {

const Vector2d OUR_GOAL(-HALF_LENGTH, 0);
const Vector2d OTHER_GOAL(HALF_LENGTH, 0);
constexpr int KNOWN = 10;           ///< cycles since an opponent was seen who counts
constexpr double NEAR_GOAL = 15;    ///< metres from a goal in which the ball's worth falls fast
constexpr double EVEN_SHARE = 0.2;  ///< of the worth, which falls evenly over the field
constexpr double NEAR_SHARE = 0.4;  ///< which falls near the goal; a goal itself is worth 1
// Of a pass's estimated chance, as measured in matches: what nobody sees comes between.
constexpr double PASS_TRUST = 0.9;  ///< over the distance that follows
constexpr double SHORT_PASS = 8;    ///< metres
constexpr double DISTRUST = 0.018;  ///< by which it falls with each metre more
constexpr double BLINDNESS = 0.06;  ///< by which it falls with each cycle that nobody looked there
constexpr int BLIND = 6;            ///< cycles after which a look is worth nothing any more
constexpr double FREE_RUN = 0.96;   ///< chance to keep the ball with a dribble nobody can reach
constexpr double STEP = 0.9;        ///< metres that a dash of a dribble brings
constexpr double CHASE = 0.85;      ///< the same with a ball that is kicked far ahead
constexpr int AHEAD_OF_THEM = 2;    ///< cycles that we have to be earlier there
constexpr std::array CHASE_SPEEDS = {1.2, 1.8, 2.4};  ///< metres per cycle
constexpr double PRESSURE = 5;       ///< metres to an opponent in which a slow dribble is at risk
constexpr double PRESSED_RUN = 0.3;  ///< chance to keep the ball there with him at the ball
constexpr double ASIDE = toRadians(30);  ///< between the directions of a dribble that are tried
constexpr double KEEP_ON = 0.03;         ///< what the direction of the cycle before is worth more
constexpr double SAME_WAY = toRadians(20);
constexpr double SURE_TACKLE = 0.7;  ///< probability of a tackle that is worth lying down for
constexpr double CLEARANCE = 15;     ///< metres that a clearance goes ahead
constexpr double COVER = 4;          ///< metres that the second player stays behind the ball

/// Near the goal every metre counts, elsewhere it is the way there that counts.
double worth(const Vector2d& place, const Vector2d& goal) {
  const double distance = (place - goal).getLength();
  const double even = 1 - distance / (2 * HALF_LENGTH);
  return EVEN_SHARE * even + NEAR_SHARE * std::exp(-distance / NEAR_GOAL);
}

double value(double chance, const Vector2d& place) {
  return chance * worth(place, OTHER_GOAL) - (1 - chance) * worth(place, OUR_GOAL);
}

double nearestOpponent(const Worldmodel& world, const Vector2d& place) {
  const int nearest = world.otherTeamClosestTo(place, KNOWN, 1);
  return nearest == -1 ? NEVER : world.otherTeam[nearest].distTo(place);
}

/// A command, what it promises, and what the mates hear of it.
struct Choice {
  Command command;
  double value = -1;
  TacticalActionState action = TA_CONTROL;
  int receiver = -1;
  bool leaves = false;  ///< the ball leaves the foot in this cycle, with this velocity
  Vector2d velocity = {};
  double direction = 0;  ///< of a run, radians
};

Choice shoot(const Player& player) {
  const GoalShot shot = player.goalShots.ourEval(&player.world);
  if (shot.score < player.goalShots.score_POOR) return {};
  const Worldmodel& world = player.world;
  const KickPlan plan = planKick(world.my, world.ball, shot.target, shot.speed);
  return {plan.command, shot.score / 100.0, TA_GOALSHOT};
}

double trust(const Worldmodel& world, const Vector2d& target) {
  const Vector2d way = target - world.ball.pos;
  const int unseen = world.dirAge(way.getAngle());
  const double farther = std::max(way.getLength() - SHORT_PASS, 0.0);
  return std::max(PASS_TRUST - DISTRUST * farther - BLINDNESS * std::min(unseen, BLIND), 0.0);
}

Choice pass(const Player& player, int maxKicks) {
  const Worldmodel& world = player.world;
  Pass best;
  double bestValue = -1;
  for (int n = FIRST_SHIRT; n <= LAST_SHIRT; ++n) {
    const Pass pass = player.passes.ourEvalProp(&world, n);
    if (pass.receiver == -1 || pass.score < player.passes.SCORE_POOR) continue;
    const double chance = pass.score / 100.0 * trust(world, pass.target);
    const double its = value(chance, pass.target);
    if (its <= bestValue) continue;
    best = pass;
    bestValue = its;
  }
  if (best.receiver == -1) return {};
  const KickPlan plan = planKick(world.my, world.ball, best.target, best.speed, maxKicks);
  Vector2d velocity = best.target - world.ball.pos;
  velocity.stretch(best.speed);
  return {plan.command, bestValue, TA_PASS, best.receiver, plan.kicks == 1, velocity};
}

/// A run with the ball, ahead as the body stands, or to the goal and round opponents. A dribble of
/// several dashes is one that no opponent can reach; with a turn or a single dash it is slow.
Choice run(const Player& player) {
  const Worldmodel& world = player.world;
  const double slow = std::min(nearestOpponent(world, world.ball.pos) / PRESSURE, 1.0);
  const double slowChance = PRESSED_RUN + (FREE_RUN - PRESSED_RUN) * slow;
  const double straight = (OTHER_GOAL - world.my.pos).getAngle();
  Choice best;
  const auto attempt = [&](double direction) {
    const Dribble dribble = player.skills.dribble(direction);
    if (dribble.command.isNone()) return;
    Vector2d way;
    way.setRadAng(STEP * dribble.dashes, direction);
    double its = value(dribble.dashes > 1 ? FREE_RUN : slowChance, world.ball.pos + way);
    const Memory& memory = player.memory;
    const bool same = std::abs(Angle::mod2pi(direction - memory.runDirection)) < SAME_WAY;
    if (same && memory.runTime >= world.time - 2) its += KEEP_ON;
    if (!inField(world.ball.pos + way, 1) || its <= best.value) return;
    best = {dribble.command, its};
    best.direction = direction;
  };
  attempt(world.my.bodyDir);
  for (double aside = -2 * ASIDE; aside <= 2 * ASIDE; aside += ASIDE) attempt(straight + aside);
  return best;
}

bool isOpponentsWithin(const Worldmodel& world, const WBall& ball, int cycles) {
  Interceptor how;
  how.limit = cycles;
  how.ageAllowance = KNOWN;
  return std::any_of(world.otherTeam.begin(), world.otherTeam.end(), [&](const WPlayer& opponent) {
    return opponent.age <= KNOWN && interception(opponent, ball, how).found();
  });
}

/// Kicks the ball far ahead, where we are first: past opponents who stand or face us.
Choice chase(const Player& player) {
  const Worldmodel& world = player.world;
  const double straight = (OTHER_GOAL - world.my.pos).getAngle();
  WPlayer me = world.my;
  Command().simulate(me);
  Choice best;
  for (double aside = -2 * ASIDE; aside <= 2 * ASIDE; aside += ASIDE) {
    for (const double speed : CHASE_SPEEDS) {
      Vector2d way;
      way.setRadAng(2 * HALF_LENGTH, straight + aside);
      const KickPlan plan = planKick(world.my, world.ball, world.ball.pos + way, speed, 1);
      if (plan.kicks == 0 || plan.speed < speed) continue;
      WBall kicked = world.ball;
      kicked.v = way.stretch(plan.speed);
      kicked.simulate();
      const Interception mine = interception(me, kicked);
      if (!mine.found() || !inField(mine.place, 1)) continue;
      const double its = value(CHASE, mine.place);
      if (its <= best.value) continue;
      if (!isOpponentsWithin(world, kicked, mine.cycles + AHEAD_OF_THEM))
        best = {plan.command, its};
    }
  }
  return best;
}

Command clearBall(const Worldmodel& world) {
  const double side = world.ball.pos.y > 0 ? HALF_WIDTH - 4 : 4 - HALF_WIDTH;
  const Vector2d place(world.ball.pos.x + CLEARANCE, side);
  return planKick(world.my, world.ball, place, BALL_SPEED_MAX, 1).command;
}

/// The mates hear of a pass before they see it, and we look at the receiver.
Command announce(Player& player, const Choice& choice) {
  const int number = player.me().number;
  if (choice.leaves) {
    WBall ball = player.world.ball;
    ball.v = choice.velocity;
    player.tactics.reportOurTacticalAction(choice.action, number, choice.receiver, ball);
  } else {
    player.tactics.reportOurTacticalAction(choice.action, number, choice.receiver);
  }
  return choice.command;
}

}  // namespace

Command passBall(Player& player) {
  const Choice choice = pass(player, 1);
  return choice.command.isNone() ? Command() : announce(player, choice);
}

Command handleBall(Player& player) {
  Choice best = {clearBall(player.world)};
  const auto consider = [&best](const Choice& choice) {
    if (!choice.command.isNone() && choice.value > best.value) best = choice;
  };
  consider(shoot(player));
  consider(pass(player, 3));
  if (!player.isGoalie()) consider(run(player));
  if (!player.isGoalie()) consider(chase(player));
  player.memory.runDirection = best.direction;
  player.memory.runTime = best.action == TA_CONTROL ? player.world.time : -NEVER;
  return announce(player, best);
}

Command playOn(Player& player) {
  const Worldmodel& world = player.world;
  const TacticalModule& tactics = player.tactics;
  const int number = world.my.number;
  // Who has taken a kick must not touch the ball again before somebody else has.
  if (player.memory.tookKick) return holdPlace(player);
  if (world.my.ballKickable(world.ball)) return handleBall(player);
  const bool theirs = tactics.ourBallControl == BC_LOST;
  if (theirs) {
    const Command won = tackle(world.my, world.ball, SURE_TACKLE);
    if (!won.isNone()) return won;
  }
  if (tactics.firstResponsiblePlayer == number) return intercept(world.my, world.ball);
  if (theirs && tactics.secondResponsiblePlayer == number) {
    const Vector2d place = world.ball.pos + (OUR_GOAL - world.ball.pos).stretch(COVER);
    const Command step = dashTo(world.my, place, 0.5, sparingPower(world.my, MAXPOWER));
    if (!step.isNone()) return step;
  }
  return holdPlace(player);
}
