#include "movement.h"

#include <algorithm>
#include <cmath>

#include "constants.h"

namespace vok {

namespace {

/// Radians. The noise of a turn is a part of its angle, so a smaller deviation costs less when it
/// is corrected nearer to the place.
constexpr double STRAIGHT = toRadians(6);

/// How much of `reach` a dash may pass by the place.
constexpr double PASSING = 0.8;

/// So many cycles bring a drift to its end, nearly.
constexpr double LONGEST_DRIFT = 20;

/// Part of `STAMINA_MAX`, kept above the marks: a command's cost shows a cycle later.
constexpr double SPARE = 0.02;

/// How far the player goes without a command.
Vector2d drift(const WPlayer& player, int cycles) {
  if (player.decay >= 1) return player.v * cycles;
  return player.v * ((1 - power(player.decay, cycles)) / (1 - player.decay));
}

int roughCycles(double distance, double speed) {
  const double cycles = std::ceil(distance / speed);
  return static_cast<int>(cycles < LONGEST_DRIFT ? std::max(1.0, cycles) : LONGEST_DRIFT);
}

/// The power of the dash that brings the player as far as the place, cut to 0..`most`.
double powerAsFar(const WPlayer& player, const Vector2d& way, double most) {
  const double along = (way - player.v) * polar(1, player.bodyDir);
  const double wanted = along / (player.dashPowerRate * player.effort);
  return std::max(0.0, std::min(wanted, most));
}

}  // namespace

double turnMoment(const WPlayer& player, Angle angle) {
  const double moment = angle / player.inertiaMoment();
  return std::max(toRadians(MINMOMENT), std::min(toRadians(MAXMOMENT), moment));
}

Command turnTo(const WPlayer& player, const Vector2d& point, double tolerance) {
  const Angle aside = player.bodyAngleTo(point);
  if (std::fabs(aside) <= tolerance) return {};
  return Command::turn(turnMoment(player, aside));
}

Command dashTo(const WPlayer& player, const Vector2d& place, double reach, double power) {
  const Vector2d way = place - player.pos;
  const double distance = way.getLength();
  if (distance <= reach) return {};

  const Vector2d aim = way - drift(player, roughCycles(distance - reach, player.vmax));
  const double left = aim.getLength();
  if (left <= reach) return {};
  const Angle aside = Angle(aim.getAngle()) - player.bodyDir;
  const double allowed = std::max(STRAIGHT, std::asin(PASSING * reach / left));
  if (std::fabs(aside) > allowed) return Command::turn(turnMoment(player, aside));
  return Command::dash(powerAsFar(player, way, power));
}

int cyclesTo(const WPlayer& player, const Vector2d& place, double reach, int limit) {
  WPlayer runner = player;
  for (int cycles = 0; cycles <= limit; ++cycles) {
    const double left = runner.distTo(place) - reach;
    if (left <= 0) return cycles;
    Command step = dashTo(runner, place, reach, MAXPOWER);
    // In the mean a turn is wrong by half of what it can be wrong by.
    if (step.kind == TURN_COMMAND) step.direction *= 1 - 0.5 * PLAYER_RAND;
    step.simulate(runner);
    // Nothing new is decided on the next half of the way: this is asked for many players and
    // places.
    if (step.kind != DASH_COMMAND) continue;
    for (double half = 0.5 * left; half > runner.vmax && cycles < limit; half -= runner.vmax) {
      step.simulate(runner);
      ++cycles;
    }
  }
  return NEVER;
}

double sparingPower(const WPlayer& player, double power) {
  const double mark = (std::max(EFFORT_DEC_THR, RECOVER_DEC_THR) + SPARE) * STAMINA_MAX;
  return std::max(0.0, std::min(power, player.stamina - mark));
}

}  // namespace vok
