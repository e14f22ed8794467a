// Possession: who touched the ball last holds it.
//
// The holder is a side or nobody. A touching of one side makes that side the holder, one of both
// sides nobody; an interruption of play makes it nobody. Each cycle of play counts for the holder
// that it has in the end.
#pragma once

#include "touches.h"

namespace vok::analysis {

class Possession {
 public:
  void touching(const Touching& now) {
    holder_ = SIDE_UNKNOWN;
    for (const playing_side side : BOTH_SIDES) {
      if (now.players.onlyOf(side)) holder_ = side;
    }
  }

  /// Behind the frame's touching.
  void frame(const Step& step) {
    if (!step.play && step.playBefore) holder_ = SIDE_UNKNOWN;
    if (!step.cycleOfPlay()) return;
    playCycles_.in(step.period, [](int& n) { ++n; });
    if (holder_ == SIDE_UNKNOWN) return;
    cycles_.in(step.period, [this](BySide<int>& n) { ++n[holder_]; });
  }

  /// `SIDE_UNKNOWN` for nobody.
  playing_side holder() const { return holder_; }
  int playCycles(Period period) const { return playCycles_[period]; }
  int cycles(Period period, playing_side side) const { return cycles_[period][side]; }

  /// The share of the cycles of both sides, 0 to 1; `ABSENT` without any.
  double share(Period period, playing_side side) const {
    const int both = cycles(period, SIDE_LEFT) + cycles(period, SIDE_RIGHT);
    return both == 0 ? ABSENT : static_cast<double>(cycles(period, side)) / both;
  }

 private:
  playing_side holder_ = SIDE_UNKNOWN;
  ByPeriod<int> playCycles_;
  ByPeriod<BySide<int>> cycles_;
};

}  // namespace vok::analysis
