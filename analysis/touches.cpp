#include "touches.h"

namespace vok::analysis {

bool hasRisen(int player, CommandCount count, const Frame& now, const Frame& before) {
  const int was = before.players[player].counts[count];
  return was != NONE && now.players[player].counts[count] > was;
}

Touches countedTouches(const Frame& now, const Frame* before) {
  Touches touches;
  for (int i = 0; i < PLAYERS; ++i) {
    const FramePlayer& player = now.players[i];
    if (!player.there()) continue;
    const bool kicked = before != nullptr && hasRisen(i, COUNT_KICK, now, *before);
    const bool tackled = before != nullptr && hasRisen(i, COUNT_TACKLE, now, *before) &&
                         player.is(STATE_TACKLE) && !player.is(STATE_TACKLE_FAULT);
    const bool caught = player.is(STATE_CATCH) && !player.is(STATE_CATCH_FAULT) &&
                        (before == nullptr || !before->players[i].is(STATE_CATCH));
    if (kicked || tackled) touches.byCounter.add(i);
    if (caught) touches.byCatch.add(i);
  }
  touches.all.bits = touches.byCounter.bits | touches.byCatch.bits;
  return touches;
}

}  // namespace vok::analysis
