// Recoveries: a single touching behind one of the other side alone, without an interruption in
// between.
#pragma once

#include <vector>

#include "touches.h"

namespace vok::analysis {

struct Recovery : Touching {
  PlayerSet lostBy;  ///< those of the touching before
};

class Recoveries {
 public:
  void reserve() { recoveries_.reserve(ROOM); }

  /// Whether the touching is one.
  bool touching(const Touching* before, const Touching& now) {
    if (before == nullptr || !now.isSingle()) return false;
    const int player = now.player();
    if (!before->players.onlyOf(otherSide(sideOf(player)))) return false;
    counts_.in(now.period, [player](ByPlayer<int>& n) { ++n[player]; });
    recoveries_.push_back({now, before->players});
    return true;
  }

  int of(Period period, int player) const { return counts_[period][player]; }
  const std::vector<Recovery>& all() const { return recoveries_; }

 private:
  static constexpr std::size_t ROOM = 4096;

  std::vector<Recovery> recoveries_;
  ByPeriod<ByPlayer<int>> counts_;
};

}  // namespace vok::analysis
