#include "shapes.h"

#include <algorithm>

namespace vok::analysis {
namespace {

constexpr std::uint32_t bitOf(int shirt) {
  return 1U << static_cast<unsigned>(shirt);
}

/// A side's players of one frame in its own frame, in the order of their shirts.
struct Team {
  std::array<Vector2d, LAST_SHIRT> places;
  std::array<int, LAST_SHIRT> shirts{};
  std::size_t count = 0;
};

Team teamOf(const Frame& frame, playing_side side) {
  Team team;
  for (int shirt = FIRST_SHIRT; shirt <= LAST_SHIRT; ++shirt) {
    const FramePlayer& player = frame.players[playerOf(side, shirt)];
    if (!player.there()) continue;
    team.places[team.count] = ownFrame(player.pos, side);
    team.shirts[team.count++] = shirt;
  }
  return team;
}

/// The second smallest x; of two players or more.
double lastLine(const Team& team) {
  double first = std::numeric_limits<double>::infinity();
  double second = first;
  for (std::size_t i = 0; i < team.count; ++i) {
    const double x = team.places[i].x;
    if (x < first) {
      second = first;
      first = x;
    } else {
      second = std::min(second, x);
    }
  }
  return second;
}

}  // namespace

// A. M. Andrew's monotone chain, "Another efficient algorithm for convex hulls in two dimensions",
// 1979: first the lower side from left to right, then the upper one back.
double hullArea(Vector2d* points, std::size_t count) {
  if (count < 3) return 0;
  std::sort(points, points + count, [](const Vector2d& a, const Vector2d& b) {
    return a.x < b.x || (a.x == b.x && a.y < b.y);
  });
  std::array<Vector2d, 2 * LAST_SHIRT + 1> hull;
  std::size_t size = 0;
  const auto add = [&](const Vector2d& point, std::size_t least) {
    while (size >= least &&
           crossProduct(hull[size - 1] - hull[size - 2], point - hull[size - 2]) <= 0) {
      --size;
    }
    hull[size++] = point;
  };
  for (std::size_t i = 0; i < count; ++i) add(points[i], 2);
  const std::size_t lower = size + 1;
  for (std::size_t i = count - 1; i-- > 0;) add(points[i], lower);

  double twice = 0;
  for (std::size_t i = 0; i + 1 < size; ++i) twice += crossProduct(hull[i], hull[i + 1]);
  return std::abs(twice) / 2;
}

/// A goalie that was not on the field before has the sums of all players. (No server shows a field
/// player who becomes goalie later.)
void Shapes::meetGoalies(const Frame& frame, playing_side side) {
  for (int shirt = FIRST_SHIRT; shirt <= LAST_SHIRT; ++shirt) {
    if (!frame.players[playerOf(side, shirt)].is(STATE_GOALIE)) continue;
    if ((goalies_[side] & bitOf(shirt)) != 0) continue;
    goalies_[side] |= bitOf(shirt);
    for (const Period period : ALL_PERIODS) {
      for (Table& table : tables_[period][side].of) {
        table[static_cast<std::size_t>(shirt)] = table[0];
      }
    }
  }
}

void Shapes::cycle(const Step& step, playing_side holder) {
  for (const playing_side side : BOTH_SIDES) {
    meetGoalies(step.now, side);
    if (holder == SIDE_UNKNOWN) continue;
    const Ball ball = side == holder ? Ball::WITH : Ball::WITHOUT;
    const Team team = teamOf(step.now, side);
    if (team.count < 2) continue;
    const double last = lastLine(team);
    // Without a known goalie it is number 1, unless one comes later.
    const std::uint32_t left =
        (goalies_[side] == 0 ? bitOf(FIRST_SHIRT) : goalies_[side]) | bitOf(0);
    for (int out = 0; out <= LAST_SHIRT; ++out) {
      if ((left & bitOf(out)) == 0) continue;
      std::array<Vector2d, LAST_SHIRT> places;
      std::size_t count = 0;
      for (std::size_t i = 0; i < team.count; ++i) {
        if (team.shirts[i] != out) places[count++] = team.places[i];
      }
      if (count < 2) continue;
      Vector2d low = places[0];
      Vector2d high = places[0];
      Vector2d sum;
      for (std::size_t i = 0; i < count; ++i) {
        low = {std::min(low.x, places[i].x), std::min(low.y, places[i].y)};
        high = {std::max(high.x, places[i].x), std::max(high.y, places[i].y)};
        sum += places[i];
      }
      const double n = static_cast<double>(count);
      const double area = hullArea(places.data(), count);
      tables_.in(step.period, [&](BySide<ByBall<Table>>& tables) {
        Sum& into = tables[side][ball][static_cast<std::size_t>(out)];
        ++into.cycles;
        into.sums.length += high.x - low.x;
        into.sums.width += high.y - low.y;
        into.sums.hullArea += area;
        into.sums.x += sum.x / n;
        into.sums.y += sum.y / n;
        into.sums.lastLine += last;
      });
    }
  }
}

Shape Shapes::of(Period period, playing_side side, Ball ball, int goalieShirt) const {
  const Sum& sum = tables_[period][side][ball][static_cast<std::size_t>(goalieShirt)];
  if (sum.cycles == 0) return {};
  const Shape& all = sum.sums;
  const double n = sum.cycles;
  return {all.length / n, all.width / n, all.hullArea / n, all.x / n, all.y / n, all.lastLine / n};
}

}  // namespace vok::analysis
