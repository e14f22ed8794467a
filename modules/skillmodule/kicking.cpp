#include "kicking.h"

#include <algorithm>
#include <cmath>

#include "constants.h"

namespace vok {

namespace {

/// Where between two kicks the ball may lie: parts of the kickable margin outside of the body, with
/// room for noise on either side.
constexpr double RINGS[] = {0.3, 0.55};
constexpr int PLACES_ON_RING = 12;
constexpr int MOST_KICKS = 3;

/// Metres per cycle that a further kick has to be worth: each can go wrong.
constexpr double WORTH_A_KICK = 0.25;

/// The same for one metre per cycle that an earlier kick changes the ball's velocity by: the noise
/// grows with it.
constexpr double WORTH_A_CHANGE = 0.05;

/// Part of a kick's power that is planned with before the last kick.
constexpr double PLANNED_POWER = 0.9;

/// Metres per cycle of a ball that has stopped.
constexpr double STANDING = 0.01;

/// Parts of the kickable margin between which a stopped ball is kept.
constexpr double NEAREST = 0.1;
constexpr double FARTHEST = 0.8;

/// By how much a kick at full power changes the ball's velocity.
double strength(const WPlayer& player, const WBall& ball) {
  return std::max(0.0, std::min(BACCEL_MAX, player.kickPowerRate(ball) * MAXPOWER));
}

Command push(const WPlayer& player, const WBall& ball, const Vector2d& change) {
  const double power = change.getLength() / player.kickPowerRate(ball);
  const Angle direction = Angle(change.getAngle()) - player.bodyDir;
  return Command::kick(std::min(power, MAXPOWER), direction);
}

/// The speed nearest to the wanted one that one kick gives the ball in a direction (a unit vector);
/// 0 when it cannot be sent there.
double speedByOneKick(const WPlayer& player, const WBall& ball, const Vector2d& towards,
                      double wanted) {
  const double most = strength(player, ball);
  const double along = ball.v * towards;
  const double across = crossProduct(towards, ball.v);
  if (std::fabs(across) > most) return 0;
  const double spread = std::sqrt(most * most - across * across);
  const double fastest = std::min(along + spread, ball.vmax);
  const double slowest = std::max(0.0, along - spread);
  return fastest < slowest ? 0 : std::clamp(wanted, slowest, fastest);
}

KickPlan oneKick(const WPlayer& player, const WBall& ball, const Vector2d& place, double speed) {
  if (!player.ballKickable(ball)) return {};
  Vector2d towards = place - ball.pos;
  towards.stretch(1);
  const double reached = speedByOneKick(player, ball, towards, speed);
  return {1, reached, push(player, ball, towards * reached - ball.v)};
}

double costOf(const KickPlan& plan, double wanted) {
  return std::fabs(wanted - plan.speed) + WORTH_A_KICK * plan.kicks;
}

/// The best of the plans whose first kick puts the ball to a place beside the player.
KickPlan kickBeside(const WPlayer& player, const WBall& ball, const Vector2d& place, double speed,
                    int maxKicks) {
  KickPlan best;
  double leastCost = HUGE_VAL;
  WPlayer next = player;
  Command{}.simulate(next);
  const double most = PLANNED_POWER * strength(player, ball);
  for (const double ring : RINGS) {
    const double distance = player.size + ball.size + ring * player.kickableMargin;
    for (int i = 0; i < PLACES_ON_RING; ++i) {
      const Vector2d beside =
          next.pos + polar(distance, next.bodyDir + 2 * PI * i / PLACES_ON_RING);
      const Vector2d velocity = beside - ball.pos;
      const Vector2d change = velocity - ball.v;
      if (change.getLength() > most || velocity.getLength() > ball.vmax) continue;
      WBall moved = ball;
      moved.v = velocity;
      moved.simulate();
      KickPlan plan = maxKicks > 2 ? kickBeside(next, moved, place, speed, maxKicks - 1)
                                   : oneKick(next, moved, place, speed);
      if (plan.kicks == 0) continue;
      ++plan.kicks;
      const double cost = costOf(plan, speed) + WORTH_A_CHANGE * change.getLength();
      if (cost >= leastCost) continue;
      leastCost = cost;
      best = plan;
      best.command = push(player, ball, change);
    }
  }
  return best;
}

/// The place nearest to the ball where it is within the player's reach in the next cycle.
Vector2d besideNext(const WPlayer& player, const WBall& ball) {
  const Vector2d centre = player.pos + player.v;
  const double touch = player.size + ball.size;
  Vector2d away = ball.pos - centre;
  if (away == Vector2d()) away = polar(1, player.bodyDir);
  const double farthest = std::min(away.getLength(), touch + FARTHEST * player.kickableMargin);
  const double distance = std::max(touch + NEAREST * player.kickableMargin, farthest);
  return centre + away.stretch(distance);
}

}  // namespace

double startSpeed(double distance, double endSpeed) {
  // A ball's way is its loss of speed, divided by 1 - decay.
  return endSpeed + distance * (1 - BALL_DECAY);
}

int rollingCycles(double distance, double startSpeed) {
  WBall ball({}, {startSpeed, 0});
  for (int cycle = 0; cycle < NEVER && ball.v.x > STANDING; ++cycle) {
    if (ball.pos.x >= distance) return cycle;
    ball.simulate();
  }
  return NEVER;
}

KickPlan planKick(const WPlayer& player, const WBall& ball, const Vector2d& place, double speed,
                  int maxKicks) {
  const double wanted = std::max(0.0, std::min(speed, ball.vmax));
  KickPlan best = oneKick(player, ball, place, wanted);
  if (best.kicks == 0) return best;
  for (int kicks = 2; kicks <= std::min(maxKicks, MOST_KICKS); ++kicks) {
    if (std::fabs(best.speed - wanted) <= WORTH_A_KICK) break;
    const KickPlan plan = kickBeside(player, ball, place, wanted, kicks);
    if (plan.kicks > 0 && costOf(plan, wanted) < costOf(best, wanted)) best = plan;
  }
  return best;
}

Command kickTo(const WPlayer& player, const WBall& ball, const Vector2d& velocity) {
  if (!player.ballKickable(ball)) return {};
  return push(player, ball, velocity - ball.v);
}

Command stopBall(const WPlayer& player, const WBall& ball) {
  return kickTo(player, ball, besideNext(player, ball) - ball.pos);
}

}  // namespace vok
