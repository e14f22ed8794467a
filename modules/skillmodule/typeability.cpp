#include "typeability.h"

#include <algorithm>
#include <cmath>
#include <numbers>

#include "constants.h"
#include "movement.h"

namespace vok {

namespace {

constexpr double SHORT_RUN = 5;   // metres
constexpr double LONG_RUN = 20;   // metres
constexpr int LONGEST_RUN = 400;  // cycles; a type that needs more cannot run
constexpr int LONGEST_TURN = 50;
constexpr double MOST_WORTH = 1000;
constexpr int HALF = 3000;  // cycles

/// A player is on its way for some seconds, and then has time to recover.
constexpr int STRETCH = 100;  // cycles

WPlayer rested(const WPlayerType& type) {
  WPlayer player({}, {});
  player.setType(type);
  player.stamina = STAMINA_MAX;
  player.effort = player.effortMax;
  player.recovery = 1;
  return player;
}

/// Cycles for a distance at full power. The last one counts in the part that the distance needs.
double runningTime(const WPlayerType& type, double distance) {
  WPlayer runner = rested(type);
  for (int cycles = 0; cycles < LONGEST_RUN; ++cycles) {
    const double before = runner.pos.x;
    runner.dash(MAXPOWER);
    runner.simulate();
    runner.recover();
    if (runner.pos.x >= distance) return cycles + (distance - before) / (runner.pos.x - before);
  }
  return LONGEST_RUN;
}

double wayInHalf(const WPlayerType& type, double dashShare, double capacity) {
  WPlayer runner = rested(type);
  for (int cycle = 0; cycle < HALF; ++cycle) {
    const bool runs = cycle % STRETCH < dashShare * STRETCH;
    if (runs) runner.dash(sparingPower(runner, MAXPOWER));
    runner.simulate();
    const double before = runner.stamina;
    runner.recover();
    runner.stamina = std::min(runner.stamina, before + capacity);
    capacity -= runner.stamina - before;
  }
  return runner.pos.x;
}

/// Cycles until a player at top speed has turned round; it does not dash meanwhile.
double turningTime(const WPlayerType& type) {
  WPlayer runner = rested(type);
  runner.v = {runner.vmax, 0};
  double left = std::numbers::pi;
  for (int cycles = 0; cycles < LONGEST_TURN; ++cycles) {
    const double turned = toRadians(MAXMOMENT) * runner.inertiaMoment();
    if (turned >= left) return cycles + left / turned;
    left -= turned;
    runner.simulate();
  }
  return LONGEST_TURN;
}

}  // namespace

bool TypeAbility::makesSense() const {
  const bool positive = shortRun > 0 && longRun > 0 && way > 0 && halfTurn > 0 && kickRange > 0;
  const double sum = shortRun + longRun + way + halfTurn + kickRange + kickNoise;
  return positive && kickNoise >= 0 && std::isfinite(sum) && longRun < LONGEST_RUN;
}

TypeAbility typeAbility(const WPlayerType& type, double dashShare, double staminaCapacity) {
  return {runningTime(type, SHORT_RUN),
          runningTime(type, LONG_RUN),
          wayInHalf(type, dashShare, staminaCapacity),
          turningTime(type),
          rested(type).kickRange(),
          type.kickRand};
}

AbilityWeights AbilityWeights::from(const std::array<double, SIZE>& values) {
  const auto& [shortRun, longRun, way, halfTurn, kickRange, kickNoise, dashShare] = values;
  return {shortRun, longRun, way, halfTurn, kickRange, kickNoise, dashShare};
}

double utility(const TypeAbility& ability, const TypeAbility& standard,
               const AbilityWeights& weights) {
  if (!ability.makesSense()) return 0;
  const double product =
      std::pow(standard.shortRun / ability.shortRun, weights.shortRun) *
      std::pow(standard.longRun / ability.longRun, weights.longRun) *
      std::pow(ability.way / standard.way, weights.way) *
      std::pow(standard.halfTurn / ability.halfTurn, weights.halfTurn) *
      std::pow(ability.kickRange / standard.kickRange, weights.kickRange) *
      // Types without any noise exist, so what counts is what remains sure of a kick.
      std::pow((1 + standard.kickNoise) / (1 + ability.kickNoise), weights.kickNoise);
  return std::isnan(product) ? 0 : std::min(product, MOST_WORTH);
}

}  // namespace vok
