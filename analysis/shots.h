// Shots and what became of them.
//
// A shot is a single touching in front of the other side's goal, at most 40 m from its centre, from
// where the ball crosses the goal line: its way is followed for 25 cycles from what the frame shows
// behind the touching. It is on target when the ball crosses between the posts.
#pragma once

#include <vector>

#include "touches.h"

namespace vok::analysis {

enum class ShotOutcome { GOAL, SAVED, BLOCKED, OFF_TARGET, OTHER };

struct Shot {
  int cycle = 0;
  Period period = Period::FIRST_HALF;
  int player = NONE;
  Vector2d place;  ///< from where
  bool onTarget = false;
  bool goal = false;
  PlayerSet next;  ///< of the next touching before an interruption; empty without one

  playing_side side() const { return sideOf(player); }
};

class Shots {
 public:
  void reserve() { shots_.reserve(ROOM); }

  /// Sets `now.shot` when the touching is a shot. `after` is the frame that shows the touching.
  void touching(Touching& now, const Frame& after, const MatchRules& rules);
  void interruption() { open_ = NONE; }

  /// A player of the last touching before a goal of his side is the scorer, whatever the tests say.
  void scoredBy(Touching& last, int player);
  /// A shot before that became a goal.
  void scored(int shot);

  const std::vector<Shot>& all() const { return shots_; }
  /// Given who is goalie on either side, which is known at the match's end only.
  static ShotOutcome outcome(const Shot& shot, const BySide<int>& goalies);

 private:
  static constexpr std::size_t ROOM = 1024;

  std::vector<Shot> shots_;
  int open_ = NONE;  ///< the shot whose next touching has not come
};

}  // namespace vok::analysis
