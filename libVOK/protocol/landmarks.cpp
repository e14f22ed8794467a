#include "landmarks.h"

#include <array>

#include "pitch.h"

namespace vok {
namespace {

// The outer flags stand 5 m outside the lines.
constexpr double OUTER_X = HALF_LENGTH + 5;
constexpr double OUTER_Y = HALF_WIDTH + 5;

constexpr auto GOALS = std::to_array<Landmark<goal_type>>({
    {"g l", GOAL_LEFT, -HALF_LENGTH, 0},
    {"g r", GOAL_RIGHT, HALF_LENGTH, 0},
});

// A name matches by its beginning: longer names stand before their beginnings.
constexpr auto FLAGS = std::to_array<Landmark<flag_type>>({
    {"f t l 50", FLAG_TOP_LEFT_50, -50, -OUTER_Y},
    {"f t l 40", FLAG_TOP_LEFT_40, -40, -OUTER_Y},
    {"f t l 30", FLAG_TOP_LEFT_30, -30, -OUTER_Y},
    {"f t l 20", FLAG_TOP_LEFT_20, -20, -OUTER_Y},
    {"f t l 10", FLAG_TOP_LEFT_10, -10, -OUTER_Y},
    {"f t 0", FLAG_TOP_0, 0, -OUTER_Y},
    {"f t r 10", FLAG_TOP_RIGHT_10, 10, -OUTER_Y},
    {"f t r 20", FLAG_TOP_RIGHT_20, 20, -OUTER_Y},
    {"f t r 30", FLAG_TOP_RIGHT_30, 30, -OUTER_Y},
    {"f t r 40", FLAG_TOP_RIGHT_40, 40, -OUTER_Y},
    {"f t r 50", FLAG_TOP_RIGHT_50, 50, -OUTER_Y},
    {"f b l 50", FLAG_BOTTOM_LEFT_50, -50, OUTER_Y},
    {"f b l 40", FLAG_BOTTOM_LEFT_40, -40, OUTER_Y},
    {"f b l 30", FLAG_BOTTOM_LEFT_30, -30, OUTER_Y},
    {"f b l 20", FLAG_BOTTOM_LEFT_20, -20, OUTER_Y},
    {"f b l 10", FLAG_BOTTOM_LEFT_10, -10, OUTER_Y},
    {"f b 0", FLAG_BOTTOM_0, 0, OUTER_Y},
    {"f b r 10", FLAG_BOTTOM_RIGHT_10, 10, OUTER_Y},
    {"f b r 20", FLAG_BOTTOM_RIGHT_20, 20, OUTER_Y},
    {"f b r 30", FLAG_BOTTOM_RIGHT_30, 30, OUTER_Y},
    {"f b r 40", FLAG_BOTTOM_RIGHT_40, 40, OUTER_Y},
    {"f b r 50", FLAG_BOTTOM_RIGHT_50, 50, OUTER_Y},
    {"f l t 30", FLAG_LEFT_TOP_30, -OUTER_X, -30},
    {"f l t 20", FLAG_LEFT_TOP_20, -OUTER_X, -20},
    {"f l t 10", FLAG_LEFT_TOP_10, -OUTER_X, -10},
    {"f l 0", FLAG_LEFT_0, -OUTER_X, 0},
    {"f l b 10", FLAG_LEFT_BOTTOM_10, -OUTER_X, 10},
    {"f l b 20", FLAG_LEFT_BOTTOM_20, -OUTER_X, 20},
    {"f l b 30", FLAG_LEFT_BOTTOM_30, -OUTER_X, 30},
    {"f r t 30", FLAG_RIGHT_TOP_30, OUTER_X, -30},
    {"f r t 20", FLAG_RIGHT_TOP_20, OUTER_X, -20},
    {"f r t 10", FLAG_RIGHT_TOP_10, OUTER_X, -10},
    {"f r 0", FLAG_RIGHT_0, OUTER_X, 0},
    {"f r b 10", FLAG_RIGHT_BOTTOM_10, OUTER_X, 10},
    {"f r b 20", FLAG_RIGHT_BOTTOM_20, OUTER_X, 20},
    {"f r b 30", FLAG_RIGHT_BOTTOM_30, OUTER_X, 30},
    {"f p l t", FLAG_P_LEFT_TOP, -PENALTY_AREA_X, -PENALTY_AREA_HALF_WIDTH},
    {"f p l c", FLAG_P_LEFT_CENTER, -PENALTY_AREA_X, 0},
    {"f p l b", FLAG_P_LEFT_BOTTOM, -PENALTY_AREA_X, PENALTY_AREA_HALF_WIDTH},
    {"f p r t", FLAG_P_RIGHT_TOP, PENALTY_AREA_X, -PENALTY_AREA_HALF_WIDTH},
    {"f p r c", FLAG_P_RIGHT_CENTER, PENALTY_AREA_X, 0},
    {"f p r b", FLAG_P_RIGHT_BOTTOM, PENALTY_AREA_X, PENALTY_AREA_HALF_WIDTH},
    {"f g l t", FLAG_GOAL_LEFT_TOP, -HALF_LENGTH, -GOAL_HALF_WIDTH},
    {"f g l b", FLAG_GOAL_LEFT_BOTTOM, -HALF_LENGTH, GOAL_HALF_WIDTH},
    {"f g r t", FLAG_GOAL_RIGHT_TOP, HALF_LENGTH, -GOAL_HALF_WIDTH},
    {"f g r b", FLAG_GOAL_RIGHT_BOTTOM, HALF_LENGTH, GOAL_HALF_WIDTH},
    {"f l t", FLAG_TOP_LEFT, -HALF_LENGTH, -HALF_WIDTH},
    {"f c t", FLAG_TOP_CENTER, 0, -HALF_WIDTH},
    {"f r t", FLAG_TOP_RIGHT, HALF_LENGTH, -HALF_WIDTH},
    {"f l b", FLAG_BOTTOM_LEFT, -HALF_LENGTH, HALF_WIDTH},
    {"f c b", FLAG_BOTTOM_CENTER, 0, HALF_WIDTH},
    {"f r b", FLAG_BOTTOM_RIGHT, HALF_LENGTH, HALF_WIDTH},
    {"f c", FLAG_CENTER, 0, 0},
});
static_assert(FLAGS.size() == NUM_FLAGS);

struct Line {
  std::string_view name;
  line_type which;
};

constexpr auto LINES = std::to_array<Line>({
    {"l t", LINE_TOP},
    {"l l", LINE_LEFT},
    {"l r", LINE_RIGHT},
    {"l b", LINE_BOTTOM},
});

template <typename Rows, typename Kind>
Kind byName(const Rows& rows, std::string_view name, Kind unknown) {
  for (const auto& row : rows) {
    if (name.starts_with(row.name)) return row.which;
  }
  return unknown;
}

}  // namespace

std::span<const Landmark<goal_type>> goalLandmarks() {
  return GOALS;
}

std::span<const Landmark<flag_type>> flagLandmarks() {
  return FLAGS;
}

goal_type goalByName(std::string_view name) {
  return byName(GOALS, name, GOAL_UNKNOWN);
}

flag_type flagByName(std::string_view name) {
  return byName(FLAGS, name, FLAG_UNKNOWN);
}

line_type lineByName(std::string_view name) {
  return byName(LINES, name, LINE_UNKNOWN);
}

}  // namespace vok
