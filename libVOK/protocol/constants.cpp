#include "constants.h"

#include <algorithm>
#include <cstddef>

#include "landmarks.h"

namespace vok {
namespace {

constexpr int MAX_COUNT = 1000;

}  // namespace

int numPlayerTypes() {
  return std::clamp(playerParams.player_types, 0, MAX_COUNT);
}

int numSubsMax() {
  return std::clamp(playerParams.subs_max, 0, MAX_COUNT);
}

ConstantsInit::ConstantsInit() {
  HALF_TIME_IN_CYCLES = HALF_TIME * 1000 / SIMULATOR_STEP;

  for (const auto& goal : goalLandmarks()) {
    const auto i = static_cast<std::size_t>(goal.which);
    goal_x[i] = goal.x;
    goal_y[i] = goal.y;
  }
  for (const auto& flag : flagLandmarks()) {
    const auto i = static_cast<std::size_t>(flag.which);
    flag_x[i] = flag.x;
    flag_y[i] = flag.y;
  }
}

}  // namespace vok
