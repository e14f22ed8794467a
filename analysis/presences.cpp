#include "presences.h"

namespace vok::analysis {

void Presences::reserve() {
  cards_.reserve(std::size_t{2} * PLAYERS);
  for (std::vector<TypeFrom>& types : types_.of) types.reserve(ROOM);
  for (const Period period : ALL_PERIODS) {
    for (Presence& presence : presences_[period].of) presence.away.reserve(ROOM);
  }
}

void Presences::frame(const Step& step) {
  for (int i = 0; i < PLAYERS; ++i) {
    const FramePlayer& shown = step.now.players[i];
    presences_.in(step.period, [&](ByPlayer<Presence>& presences) {
      see(presences[i], shown.there(), step.now.cycle);
    });
    if (!shown.there()) continue;
    seeType(i, shown, step);
    seeCards(i, shown, step.now.cycle);
  }
}

void Presences::see(Presence& presence, bool there, int cycle) {
  Span& open = presence.open;
  if (there) {
    if (!presence.ever) presence.span.first = cycle;
    presence.ever = true;
    presence.span.last = cycle;
    if (open.first != NONE) presence.away.push_back(open);
    open = {NONE, NONE};
  } else if (presence.ever) {
    if (open.first == NONE) open.first = cycle;
    open.last = cycle;
  }
}

void Presences::seeType(int player, const FramePlayer& shown, const Step& step) {
  std::vector<TypeFrom>& types = types_[player];
  if (shown.type == NONE || (!types.empty() && types.back().type == shown.type)) return;
  types.push_back({step.now.cycle, step.period, shown.type});
}

/// The bits stay for the rest of the match.
void Presences::seeCards(int player, const FramePlayer& shown, int cycle) {
  for (const StateBit bit : {STATE_YELLOW_CARD, STATE_RED_CARD}) {
    if (!shown.is(bit) || (cardsSeen_[player] & bit) != 0) continue;
    cardsSeen_[player] |= bit;
    cards_.push_back({cycle, player, bit == STATE_RED_CARD});
  }
}

}  // namespace vok::analysis
