// Dribbles: a player takes the ball with him.
//
// A dribble is a run of two or more single touchings in a row by one player, shots included,
// without an interruption in between, over at least 2 m from the first place to the last one; one a
// run.
#pragma once

#include <vector>

#include "touches.h"

namespace vok::analysis {

struct Dribble {
  int cycle = 0;  ///< in which it begins
  Period period = Period::FIRST_HALF;
  int player = NONE;
  int touchings = 0;
  Vector2d place;  ///< of the first touching
  Vector2d toPlace;
};

class Dribbles {
 public:
  void reserve() { dribbles_.reserve(ROOM); }

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
      dribbles_.push_back(
          {first_.cycle, first_.period, first_.player(), touchings_, first_.place, last_});
    }
    touchings_ = 0;
  }

  int of(Period period, int player) const { return counts_[period][player]; }
  const std::vector<Dribble>& all() const { return dribbles_; }

 private:
  static constexpr std::size_t ROOM = 2048;

  Touching first_;
  Vector2d last_;
  int touchings_ = 0;
  std::vector<Dribble> dribbles_;
  ByPeriod<ByPlayer<int>> counts_;
};

}  // namespace vok::analysis
