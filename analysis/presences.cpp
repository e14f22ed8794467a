#include "presences.h"

namespace vok::analysis {

void Presences::reserve() {
  cards_.reserve(std::size_t{2} * PLAYERS);
  for (Presence& presence : presences_.of) {
    presence.away.reserve(ROOM);
    presence.types.reserve(ROOM);
  }
  open_.of.fill({NONE, NONE});
}

void Presences::frame(const Step& step) {
  for (int i = 0; i < PLAYERS; ++i) {
    const FramePlayer& shown = step.now.players[i];
    if (shown.there()) {
      see(i, shown, step.now.cycle);
    } else if (presences_[i].ever) {
      Span& open = open_[i];
      if (open.first == NONE) open.first = step.now.cycle;
      open.last = step.now.cycle;
    }
  }
}

void Presences::see(int player, const FramePlayer& shown, int cycle) {
  Presence& presence = presences_[player];
  if (!presence.ever) presence.span.first = cycle;
  presence.ever = true;
  presence.span.last = cycle;
  if (open_[player].first != NONE) {
    presence.away.push_back(open_[player]);
    open_[player] = {NONE, NONE};
  }
  const bool isNew = presence.types.empty() || presence.types.back().type != shown.type;
  if (isNew && shown.type != NONE) presence.types.push_back({cycle, shown.type});
  if (shown.is(STATE_YELLOW_CARD) || shown.is(STATE_RED_CARD)) card(player, shown, cycle);
}

/// The bits stay for the rest of the match.
void Presences::card(int player, const FramePlayer& shown, int cycle) {
  for (const StateBit bit : {STATE_YELLOW_CARD, STATE_RED_CARD}) {
    if (!shown.is(bit) || (cardsSeen_[player] & bit) != 0) continue;
    cardsSeen_[player] |= bit;
    cards_.push_back({cycle, player, bit == STATE_RED_CARD});
  }
}

}  // namespace vok::analysis
