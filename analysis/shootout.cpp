#include "shootout.h"

namespace vok::analysis {

void ShootOut::frame(const Touches& touches) {
  if (kicks_.empty() || kicks_.back().taker != NONE) return;
  const PlayerSet takers = touches.byCounter.of(kicks_.back().side);
  if (!takers.empty()) kicks_.back().taker = takers.first();
}

void ShootOut::announce(const Call& call) {
  if (call.kind == CallKind::PENALTY_SETUP) {
    kicks_.push_back({call.cycle, call.side, NONE, KickResult::UNKNOWN});
    return;
  }
  const bool missed = call.kind == CallKind::PENALTY_MISS;
  if ((!missed && call.kind != CallKind::PENALTY_SCORE) || kicks_.empty()) return;
  if (missed) ++misses_[call.side];
  PenaltyKick& kick = kicks_.back();
  if (kick.side == call.side && kick.result == KickResult::UNKNOWN) {
    kick.result = missed ? KickResult::MISS : KickResult::GOAL;
  }
}

void ShootOut::end(const Score& score) {
  for (PenaltyKick& kick : kicks_) {
    if (kick.result != KickResult::UNKNOWN) continue;
    if (score.penalties[kick.side].misses > misses_[kick.side]) kick.result = KickResult::MISS;
  }
}

}  // namespace vok::analysis
