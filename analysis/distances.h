// The distance that a player runs: its ways from cycle to cycle in play. A way above 1.5 m is left
// out, since nobody runs so far in a cycle: the player was put elsewhere.
#pragma once

#include "touches.h"

namespace vok::analysis {

class Distances {
 public:
  void frame(const Step& step) {
    constexpr double LONGEST_WAY = 1.5;  // metres
    if (!step.play || !step.next()) return;
    for (int i = 0; i < PLAYERS; ++i) {
      const FramePlayer& player = step.now.players[i];
      const FramePlayer& before = step.before->players[i];
      if (!player.there() || !before.there()) continue;
      const double way = distance(before.pos, player.pos);
      if (way > LONGEST_WAY) continue;
      metres_.in(step.period, [i, way](ByPlayer<double>& metres) { metres[i] += way; });
    }
  }

  /// Metres.
  double of(Period period, int player) const { return metres_[period][player]; }
  double of(Period period, playing_side side) const {
    double sum = 0;
    for (int shirt = FIRST_SHIRT; shirt <= LAST_SHIRT; ++shirt)
      sum += of(period, playerOf(side, shirt));
    return sum;
  }

 private:
  ByPeriod<ByPlayer<double>> metres_;
};

}  // namespace vok::analysis
