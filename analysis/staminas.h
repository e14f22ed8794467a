// Stamina: what each player had left, and how far it fell in play.
#pragma once

#include <algorithm>

#include "touches.h"

namespace vok::analysis {

/// Each value is `ABSENT` where no frame of the period told it.
struct StaminaTable {
  double left = ABSENT;      ///< in the period's last frame in which the player was there
  double capacity = ABSENT;  ///< likewise
  // Over the cycles of play:
  double least = ABSENT;
  double leastEffort = ABSENT;
  double leastRecovery = ABSENT;
  int lowCycles = 0;  ///< below the stamina at which the effort falls
};

class Staminas {
 public:
  void frame(const Step& step, const MatchRules& rules) {
    for (int i = 0; i < PLAYERS; ++i) {
      const FramePlayer& player = step.now.players[i];
      if (!player.there() || isAbsent(player.stamina)) continue;
      const bool low = player.stamina < rules.effortDecThr * rules.staminaMax;
      const bool counts = step.cycleOfPlay();
      tables_.in(step.period, [&](ByPlayer<StaminaTable>& all) {
        StaminaTable& table = all[i];
        table.left = player.stamina;
        table.capacity = player.capacity;
        if (!counts) return;
        table.least = std::fmin(table.least, player.stamina);
        table.leastEffort = std::fmin(table.leastEffort, player.effort);
        table.leastRecovery = std::fmin(table.leastRecovery, player.recovery);
        table.lowCycles += low ? 1 : 0;
      });
    }
  }

  /// At half-time the player has what the first half left.
  const StaminaTable& of(Period period, int player) const { return tables_[period][player]; }

 private:
  ByPeriod<ByPlayer<StaminaTable>> tables_;
};

}  // namespace vok::analysis
