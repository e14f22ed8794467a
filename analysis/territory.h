// Territory and heat maps: in which part of the pitch the ball and each player were in the cycles
// of play, in the log's frame for both sides.
#pragma once

#include "touches.h"

namespace vok::analysis {

class Territory {
 public:
  static constexpr std::size_t COLUMNS = 21;  ///< of 5 m, from x = -52.5
  static constexpr std::size_t ROWS = 14;     ///< of 68 m / 14, from y = -34
  static constexpr std::size_t THIRDS = 3;

  /// Cycles in each cell, by column * ROWS + row. What lies outside is in the outermost cells.
  using Cells = std::array<int, COLUMNS * ROWS>;

  /// Of a cycle of play.
  void cycle(const Step& step);

  const Cells& ball(Period period) const { return ball_[period]; }
  const Cells& player(Period period, int player) const { return players_[period][player]; }
  /// Cycles with the ball below x = -17.5, up to 17.5, and above.
  const std::array<int, THIRDS>& thirds(Period period) const { return thirds_[period]; }

 private:
  ByPeriod<Cells> ball_;
  ByPeriod<ByPlayer<Cells>> players_;
  ByPeriod<std::array<int, THIRDS>> thirds_;
};

}  // namespace vok::analysis
