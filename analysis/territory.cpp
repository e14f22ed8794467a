#include "territory.h"

#include <algorithm>

namespace vok::analysis {
namespace {

/// The cell of a coordinate, the outermost one for what lies outside.
std::size_t cell(double fromEdge, double size, std::size_t cells) {
  const double last = static_cast<double>(cells - 1);
  return static_cast<std::size_t>(std::clamp(std::floor(fromEdge / size), 0.0, last));
}

std::size_t cellOf(const Vector2d& pos) {
  constexpr double COLUMN = 5;                    // metres
  constexpr double ROW = 68.0 / Territory::ROWS;  // metres
  return cell(pos.x + HALF_LENGTH, COLUMN, Territory::COLUMNS) * Territory::ROWS +
         cell(pos.y + HALF_WIDTH, ROW, Territory::ROWS);
}

std::size_t thirdOf(double x) {
  constexpr double EDGE = 17.5;  // metres
  if (x < -EDGE) return 0;
  return x <= EDGE ? 1 : 2;
}

}  // namespace

void Territory::cycle(const Step& step) {
  const std::size_t ballCell = cellOf(step.now.ball);
  const std::size_t third = thirdOf(step.now.ball.x);
  ball_.in(step.period, [=](Cells& cells) { ++cells[ballCell]; });
  thirds_.in(step.period, [=](std::array<int, THIRDS>& cycles) { ++cycles[third]; });
  for (int i = 0; i < PLAYERS; ++i) {
    const FramePlayer& player = step.now.players[i];
    if (!player.there()) continue;
    const std::size_t at = cellOf(player.pos);
    players_.in(step.period, [=](ByPlayer<Cells>& cells) { ++cells[i][at]; });
  }
}

}  // namespace vok::analysis
