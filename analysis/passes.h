// Passes, and who plays to whom.
//
// A pass is a single touching that is no shot, followed without an interruption by the single
// touching of another player, at least 2 m away: completed when that one is of the same side, else
// intercepted. It is out when the ball leaves the pitch before anybody else touches it, so that the
// other side takes the kick, or when the own side's offside is called.
#pragma once

#include <vector>

#include "calls.h"
#include "touches.h"

namespace vok::analysis {

struct PassCounts {
  int completed = 0;
  int intercepted = 0;
  int out = 0;

  int tried() const { return completed + intercepted + out; }
};

enum class PassResult { COMPLETED, INTERCEPTED, OUT };

struct Pass {
  int cycle = 0;
  Period period = Period::FIRST_HALF;
  int from = NONE;
  int to = NONE;  ///< who touched the ball next, of either side; nobody where it went out
  Vector2d place;
  Vector2d toPlace;  ///< of the next touching; of a ball that went out the same place
  PassResult result = PassResult::OUT;
};

class Passes {
 public:
  void reserve() { passes_.reserve(ROOM); }

  /// The touching and the one before it in the stretch, null without one.
  void touching(const Touching* before, const Touching& now);
  /// The last touching of the stretch that the call ends, null without one.
  void interruption(const Touching* last, const Call& call);

  const PassCounts& of(Period period, int player) const { return counts_[period][player]; }
  /// Completed passes from one player to another of his side.
  int between(Period period, int from, int to) const {
    return network_[period][from][static_cast<std::size_t>(shirtOf(to) - 1)];
  }
  const std::vector<Pass>& all() const { return passes_; }

 private:
  static constexpr std::size_t ROOM = 4096;

  std::vector<Pass> passes_;
  ByPeriod<ByPlayer<PassCounts>> counts_;
  ByPeriod<ByPlayer<std::array<int, LAST_SHIRT>>> network_;
};

}  // namespace vok::analysis
