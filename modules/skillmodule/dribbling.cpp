#include "dribbling.h"

#include <algorithm>
#include <cmath>

#include "constants.h"
#include "interception.h"
#include "kicking.h"
#include "movement.h"

namespace vok {

namespace {

/// Radians. The body stands well enough to the direction.
constexpr double STRAIGHT = toRadians(8);

/// Metres: the ball rolls beside the body, so that the player does not run into it, and is a little
/// ahead when it is kicked again.
constexpr double BESIDE = 0.12;
constexpr double AHEAD = 0.25;
constexpr double CLEAR = 0.05;
constexpr double INSIDE = 0.15;

/// Metres that the ball keeps from the lines.
constexpr double FROM_LINES = 0.5;

/// Where the ball is to lie beside a player that comes with it.
Vector2d placeBeside(const WPlayer& runner, const Vector2d& ballNow, const WPlayer& now) {
  const Vector2d ahead = polar(1, runner.bodyDir);
  const bool left = crossProduct(ahead, ballNow - now.pos) >= 0;
  const double aside = runner.size + BALL_SIZE + BESIDE;
  return runner.pos + AHEAD * ahead + (left ? aside : -aside) * ahead.perp();
}

/// The player after the cycle of the kick and so many full dashes.
WPlayer after(const WPlayer& player, int dashes) {
  WPlayer runner = player;
  Command{}.simulate(runner);
  for (int i = 0; i < dashes; ++i) Command::dash(MAXPOWER).simulate(runner);
  return runner;
}

bool isHit(const WPlayer& player, const WBall& ball) {
  return player.distTo(ball.pos) < player.size + ball.size + CLEAR;
}

bool runsIntoBall(const WPlayer& player, WBall ball, int dashes) {
  for (int i = 0; i <= dashes; ++i) {
    ball.simulate();
    if (isHit(after(player, i), ball)) return true;
  }
  return false;
}

/// After how many dashes the ball, as it rolls, is within reach and not yet behind the player; 0
/// when it has to be kicked first.
int dashesWithoutKick(WPlayer runner, WBall ball, int maxDashes) {
  for (int dashes = 1; dashes <= maxDashes; ++dashes) {
    Command::dash(MAXPOWER).simulate(runner);
    ball.simulate();
    if (isHit(runner, ball)) return 0;
    const Vector2d way = ball.pos - runner.pos;
    const bool behind = way * polar(1, runner.bodyDir) < 0;
    if (!behind && way.getLength() < runner.kickRange() - INSIDE) return dashes;
  }
  return 0;
}

bool isOpponentsBefore(const WBall& ball, int cycles, const Squad<WPlayer>& opponents, int maxAge) {
  return std::any_of(opponents.begin(), opponents.end(), [&](const WPlayer& opponent) {
    if (opponent.age > maxAge) return false;
    return interception(opponent, ball, {cycles, maxAge, opponent.kickRange()}).found();
  });
}

Command turnFirst(const WPlayer& player, const WBall& ball, Angle aside) {
  const double next = (ball.pos + ball.v - player.pos - player.v).getLength();
  const double touch = player.size + ball.size;
  const bool stays = next > touch + CLEAR && next < touch + 0.8 * player.kickableMargin;
  return stays ? Command::turn(turnMoment(player, aside)) : stopBall(player, ball);
}

}  // namespace

Dribble dribble(const WPlayer& player, const WBall& ball, Angle direction,
                const Squad<WPlayer>& opponents, int maxDashes, int maxAge) {
  if (!player.ballKickable(ball)) return {};
  const Angle aside = direction - player.bodyDir;
  if (std::fabs(aside) > STRAIGHT) return {1, turnFirst(player, ball, aside)};

  const int free = dashesWithoutKick(player, ball, maxDashes);
  if (free > 0 && !isOpponentsBefore(ball, free, opponents, maxAge)) {
    return {free, Command::dash(MAXPOWER)};
  }
  for (int dashes = maxDashes; dashes > 0; --dashes) {
    const Vector2d place = placeBeside(after(player, dashes), ball.pos, player);
    const int cycles = dashes + 1;
    WBall kicked = ball;
    kicked.v = (place - ball.pos) * ((1 - ball.decay) / (1 - power(ball.decay, cycles)));
    const Command kick = kickTo(player, ball, kicked.v);
    const double strongest = player.kickPowerRate(ball) * MAXPOWER;
    if ((kicked.v - ball.v).getLength() > strongest || kicked.v.getLength() > ball.vmax) continue;
    if (!inField(place, FROM_LINES) || runsIntoBall(player, kicked, dashes)) continue;
    if (isOpponentsBefore(kicked, cycles, opponents, maxAge)) continue;
    return {dashes, kick};
  }
  return {};
}

}  // namespace vok
