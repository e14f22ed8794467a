// Entries into the penalty area: the ball is inside in a cycle of play and was outside in the cycle
// before, also of play. They count for the side that attacks this goal.
#pragma once

#include <vector>

#include "touches.h"

namespace vok::analysis {

struct Entry {
  int cycle = 0;
  Period period = Period::FIRST_HALF;
  playing_side side = SIDE_UNKNOWN;  ///< that attacks
};

class Entries {
 public:
  void reserve() { entries_.reserve(ROOM); }

  void frame(const Step& step) {
    if (step.standing()) return;  // a cycle is its first frame
    for (const playing_side side : BOTH_SIDES) {
      const bool isInside = inPenaltyArea(ownFrame(step.now.ball, side));
      if (step.play && playBefore_ && step.now.cycle == cycleBefore_ + 1 && isInside &&
          !insideBefore_[side]) {
        counts_.in(step.period, [side](BySide<int>& n) { ++n[side]; });
        entries_.push_back({step.now.cycle, step.period, side});
      }
      insideBefore_[side] = isInside;
    }
    cycleBefore_ = step.now.cycle;
    playBefore_ = step.play;
  }

  int of(Period period, playing_side side) const { return counts_[period][side]; }
  const std::vector<Entry>& all() const { return entries_; }

 private:
  static constexpr std::size_t ROOM = 1024;

  /// The other side's, in the side's own frame.
  static bool inPenaltyArea(const Vector2d& ball) {
    return ball.x > PENALTY_AREA_X && std::abs(ball.y) < PENALTY_AREA_HALF_WIDTH;
  }

  int cycleBefore_ = 0;
  bool playBefore_ = false;
  BySide<bool> insideBefore_;
  ByPeriod<BySide<int>> counts_;
  std::vector<Entry> entries_;
};

}  // namespace vok::analysis
