// What each player did at the ball: touches, catches, tackles, kicks that failed.
#pragma once

#include "inferredtouches.h"

namespace vok::analysis {

struct ActionCounts {
  int touches = 0;
  int catches = 0;       ///< touches by a catch
  int tacklesTried = 0;  ///< the tackle counter rose
  int tacklesWon = 0;    ///< and the tackle worked
  int kickFaults = 0;    ///< kicks out of reach of the ball
};

class Actions {
 public:
  /// Where commands are not counted, a tackle is seen by the state and wins where it touches.
  void frame(const Step& step, const Touches& touches) {
    for (int i = 0; i < PLAYERS; ++i) {
      const FramePlayer& player = step.now.players[i];
      if (!player.there()) continue;
      const bool tackled = step.now.counted ? step.before != nullptr &&
                                                  hasRisen(i, COUNT_TACKLE, step.now, *step.before)
                                            : beginsTackle(i, step.now, step.before);
      const bool works = step.now.counted
                             ? player.is(STATE_TACKLE) && !player.is(STATE_TACKLE_FAULT)
                             : touches.byCounter.has(i);
      const bool won = tackled && works;
      const bool missed = player.is(STATE_KICK_FAULT);
      if (!tackled && !missed && !touches.all.has(i)) continue;
      counts_.in(step.period, [&](ByPlayer<ActionCounts>& all) {
        ActionCounts& counts = all[i];
        counts.touches += touches.all.has(i) ? 1 : 0;
        counts.catches += touches.byCatch.has(i) ? 1 : 0;
        counts.tacklesTried += tackled ? 1 : 0;
        counts.tacklesWon += won ? 1 : 0;
        counts.kickFaults += missed ? 1 : 0;
      });
    }
  }

  const ActionCounts& of(Period period, int player) const { return counts_[period][player]; }

 private:
  ByPeriod<ByPlayer<ActionCounts>> counts_;
};

}  // namespace vok::analysis
