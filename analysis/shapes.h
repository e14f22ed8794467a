// The shape of a side: how long and wide its field players stand, what area they span, where they
// are, and where its last line is.
#pragma once

#include "formations.h"

namespace vok::analysis {

/// Means over cycles, metres in the side's own frame; all `ABSENT` without any.
struct Shape {
  double length = ABSENT;    ///< along the pitch
  double width = ABSENT;     ///< across it
  double hullArea = ABSENT;  ///< of the convex hull, square metres
  double x = ABSENT;         ///< the mean place
  double y = ABSENT;
  double lastLine = ABSENT;  ///< the second smallest x, the goalie's included
};

class Shapes {
 public:
  /// Of a cycle of play; `holder` is who has the ball, `SIDE_UNKNOWN` for nobody.
  void cycle(const Step& step, playing_side holder);

  Shape of(Period period, playing_side side, Ball ball, int goalieShirt) const;

 private:
  struct Sum {
    int cycles = 0;
    Shape sums{0, 0, 0, 0, 0, 0};
  };
  /// Slot 0 is that of all players, the others that of all but this shirt number. The goalie is
  /// known at the match's end only, so each possible one has its sums.
  using Table = std::array<Sum, LAST_SHIRT + 1>;

  void meetGoalies(const Frame& frame, playing_side side);

  ByPeriod<BySide<ByBall<Table>>> tables_;
  BySide<std::uint32_t> goalies_;  ///< shirt numbers that were seen as goalie, a bit each
};

/// The area of the convex hull of some points, which are sorted for it.
double hullArea(Vector2d* points, std::size_t count);

}  // namespace vok::analysis
