// Recoveries: a single touching behind one of the other side alone, without an interruption in
// between.
#pragma once

#include "touches.h"

namespace vok::analysis {

class Recoveries {
 public:
  /// Whether the touching is one.
  bool touching(const Touching* before, const Touching& now) {
    if (before == nullptr || !now.isSingle()) return false;
    const int player = now.player();
    if (!before->players.onlyOf(otherSide(sideOf(player)))) return false;
    counts_.in(now.period, [player](ByPlayer<int>& n) { ++n[player]; });
    return true;
  }

  int of(Period period, int player) const { return counts_[period][player]; }

 private:
  ByPeriod<ByPlayer<int>> counts_;
};

}  // namespace vok::analysis
