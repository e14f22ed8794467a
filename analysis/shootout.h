// The penalty shoot-out: who took each kick, and what became of it.
#pragma once

#include <vector>

#include "calls.h"
#include "matchsource.h"
#include "touches.h"

namespace vok::analysis {

enum class KickResult { UNKNOWN, GOAL, MISS };

struct PenaltyKick {
  int cycle = 0;
  playing_side side = SIDE_UNKNOWN;
  int taker = NONE;
  KickResult result = KickResult::UNKNOWN;
};

/// It begins with the first `PENALTY_SETUP`; for everything else the match has ended then. The
/// taker of a kick is the first of its side whose kick or tackle touches the ball behind the frame
/// with which the kick is announced, up to the frame of the next announcement.
class ShootOut {
 public:
  void reserve() { kicks_.reserve(ROOM); }
  bool begun() const { return !kicks_.empty(); }

  /// The touches of a frame come before what is announced with it.
  void frame(const Touches& touches);
  void announce(const Call& call);
  /// A kick whose result nobody announced was a miss if the last score has more misses.
  void end(const Score& score);

  const std::vector<PenaltyKick>& kicks() const { return kicks_; }

 private:
  static constexpr std::size_t ROOM = 64;

  std::vector<PenaltyKick> kicks_;
  BySide<int> misses_;  ///< that were announced
};

}  // namespace vok::analysis
