#include "ballreach.h"

#include <algorithm>
#include <cmath>

#include "constants.h"

namespace vok {

namespace {

/// A body direction that is older than this is no basis for counting turns, cycles.
constexpr int MAX_BODY_AGE = 3;

}  // namespace

BallWay::BallWay(const Vector2d& pos, const Vector2d& velocity) {
  Vector2d place = pos;
  Vector2d step = velocity;
  places[0] = pos;
  for (int cycle = 1; cycle <= MAX_WAY; ++cycle) {
    const Vector2d next = place + step;
    if (cyclesInside == MAX_WAY && !inField(next, 0) && inField(place, 0)) cyclesInside = cycle - 1;
    if (cycle <= cyclesInside) place = next;
    places[static_cast<std::size_t>(cycle)] = place;
    step *= BALL_DECAY;
  }
}

Runner::Runner(const WPlayer& player, double reach)
    : pos(player.pos), v(player.v), reach(reach), topSpeed(player.vmax) {
  const double acceleration = player.dashPowerRate * player.effort * MAXPOWER;
  double speed = 0;
  double drift = 1;
  for (std::size_t cycle = 1; cycle <= MAX_WAY; ++cycle) {
    speed = std::min(speed + acceleration, player.vmax);
    runs[cycle] = runs[cycle - 1] + speed;
    drifts[cycle] = drifts[cycle - 1] + drift;
    speed *= player.decay;
    drift *= player.decay;
  }
  bodyKnown = player.bodyAge <= MAX_BODY_AGE;
  body.setRadAng(1, player.bodyDir);
  minCosine = std::cos(std::min(PI, toRadians(MAXMOMENT) * player.inertiaMoment()));
}

/// A player need not turn to a ball that it passes within its reach.
int Runner::turnsTo(const Vector2d& way) const {
  if (!bodyKnown) return 1;
  const double ahead = way * body;
  if (ahead >= 0 && std::fabs(crossProduct(body, way)) <= reach) return 0;
  return ahead >= minCosine * way.getLength() ? 1 : 2;
}

double Runner::shortage(const Vector2d& place, int cycles) const {
  const auto cycle = static_cast<std::size_t>(cycles);
  const Vector2d way = place - pos - v * drifts[cycle];
  const double open = way.getLength() - reach;
  if (open <= 0) return open;
  const int running = cycles - turnsTo(way);
  return running > 0 ? open - runs[static_cast<std::size_t>(running)] : open;
}

double playingReach(const WPlayer& player, bool atOwnGoal) {
  const double foot = player.kickRange();
  if (!atOwnGoal || player.isGoalie != GOALIE_TRUE) return foot;
  return std::max(foot, std::hypot(CATCHABLE_AREA_L, CATCHABLE_AREA_W / 2));
}

Reach earliestReach(const Runner& runner, const BallWay& way) {
  for (int cycle = 0; cycle <= MAX_WAY; ++cycle) {
    if (runner.shortage(way[cycle], cycle) <= 0) return {cycle, way[cycle]};
  }
  if (!(runner.topSpeed > 0)) return {};
  const double cycles = MAX_WAY + runner.shortage(way[MAX_WAY], MAX_WAY) / runner.topSpeed;
  if (!(cycles < NEVER)) return {};  // also when a server's strange parameters make it no number
  return {static_cast<int>(std::ceil(cycles)), way[MAX_WAY]};
}

int kicksFor(const WPlayer& player, const WBall& ball, const Vector2d& velocity, int most) {
  const double strength = player.kickPowerRate(ball) * MAXPOWER;
  const double kicks = std::ceil((velocity - ball.v).getLength() / strength);
  if (!(kicks <= most)) return most + 1;  // also when the strength is no number
  return std::max(1, static_cast<int>(kicks));
}

}  // namespace vok
