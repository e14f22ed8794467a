// Dribbles: a player takes the ball with him.
//
// A dribble is a run of two or more single touchings in a row by one player, shots included,
// without an interruption in between, over at least 2 m from the first place to the last one; one a
// run.
#pragma once

#include "touches.h"

namespace vok::analysis {

class Dribbles {
 public:
  void touching(const Touching* before, const Touching& now) {
    const bool goesOn = before != nullptr && before->isSingle() && now.isSingle() &&
                        before->player() == now.player();
    if (!goesOn) {
      endRun();
      first_ = now;
    }
    last_ = now.place;
    ++touchings_;
  }

  /// At an interruption and at the match's end.
  void endRun() {
    constexpr double LEAST_LENGTH = 2;  // metres
    if (touchings_ > 1 && distance(first_.place, last_) >= LEAST_LENGTH) {
      counts_.in(first_.period, [this](ByPlayer<int>& n) { ++n[first_.player()]; });
    }
    touchings_ = 0;
  }

  int of(Period period, int player) const { return counts_[period][player]; }

 private:
  Touching first_;
  Vector2d last_;
  int touchings_ = 0;
  ByPeriod<ByPlayer<int>> counts_;
};

}  // namespace vok::analysis
