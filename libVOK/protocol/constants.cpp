#include "constants.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace vok {
namespace {

constexpr int MAX_COUNT = 1000;

struct FlagPosition {
  flag_type flag;
  double x;
  double y;
};

void setFlag(int flag, double x, double y) {
  flag_x[static_cast<std::size_t>(flag)] = x;
  flag_y[static_cast<std::size_t>(flag)] = y;
}

}  // namespace

int numPlayerTypes() {
  return std::clamp(playerParams.player_types, 0, MAX_COUNT);
}

int numSubsMax() {
  return std::clamp(playerParams.subs_max, 0, MAX_COUNT);
}

ConstantsInit::ConstantsInit() {
  HALF_TIME_IN_CYCLES = HALF_TIME * 1000 / SIMULATOR_STEP;

  goal_x = {-52.5, 52.5};
  goal_y = {0, 0};

  const double post = GOAL_WIDTH / 2;
  const auto marks = std::to_array<FlagPosition>({
      {FLAG_TOP_LEFT, -52.5, -34},
      {FLAG_TOP_CENTER, 0, -34},
      {FLAG_TOP_RIGHT, 52.5, -34},
      {FLAG_BOTTOM_LEFT, -52.5, 34},
      {FLAG_BOTTOM_CENTER, 0, 34},
      {FLAG_BOTTOM_RIGHT, 52.5, 34},
      {FLAG_CENTER, 0, 0},
      {FLAG_P_LEFT_TOP, -36, -20.16},
      {FLAG_P_LEFT_CENTER, -36, 0},
      {FLAG_P_LEFT_BOTTOM, -36, 20.16},
      {FLAG_P_RIGHT_TOP, 36, -20.16},
      {FLAG_P_RIGHT_CENTER, 36, 0},
      {FLAG_P_RIGHT_BOTTOM, 36, 20.16},
      {FLAG_GOAL_LEFT_TOP, -52.5, -post},
      {FLAG_GOAL_LEFT_BOTTOM, -52.5, post},
      {FLAG_GOAL_RIGHT_TOP, 52.5, -post},
      {FLAG_GOAL_RIGHT_BOTTOM, 52.5, post},
  });
  for (const FlagPosition& mark : marks) setFlag(mark.flag, mark.x, mark.y);

  // The outer flags stand 5 m outside the lines, every 10 m; their values are in that order.
  for (int i = 0; i <= FLAG_TOP_RIGHT_50 - FLAG_TOP_LEFT_50; ++i) {
    setFlag(FLAG_TOP_LEFT_50 + i, -50 + 10 * i, -39);
    setFlag(FLAG_BOTTOM_LEFT_50 + i, -50 + 10 * i, 39);
  }
  for (int i = 0; i <= FLAG_LEFT_BOTTOM_30 - FLAG_LEFT_TOP_30; ++i) {
    setFlag(FLAG_LEFT_TOP_30 + i, -57.5, -30 + 10 * i);
    setFlag(FLAG_RIGHT_TOP_30 + i, 57.5, -30 + 10 * i);
  }
}

}  // namespace vok
