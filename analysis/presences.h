// When each player was on the field, which types it had, which cards it saw.
#pragma once

#include <vector>

#include "touches.h"

namespace vok::analysis {

/// Cycles from `first` to `last`, both included.
struct Span {
  int first = 0;
  int last = 0;
};

struct TypeFrom {
  int cycle = 0;
  Period period = Period::FIRST_HALF;
  int type = NONE;
};

struct Card {
  int cycle = 0;
  int player = NONE;
  bool red = false;
};

/// On the field in a part of the match.
struct Presence {
  bool ever = false;
  Span span;               ///< the first and the last cycle on the field
  std::vector<Span> away;  ///< the spans in between without the player
  Span open{NONE, NONE};   ///< without the player until now; not yet in between
};

class Presences {
 public:
  void reserve();
  void frame(const Step& step);

  const Presence& of(Period period, int player) const { return presences_[period][player]; }
  /// Every entry behind the first is a substitution.
  const std::vector<TypeFrom>& types(int player) const { return types_[player]; }
  const std::vector<Card>& cards() const { return cards_; }

 private:
  static constexpr std::size_t ROOM = 32;  // changes of one player

  static void see(Presence& presence, bool there, int cycle);
  void seeType(int player, const FramePlayer& shown, const Step& step);
  void seeCards(int player, const FramePlayer& shown, int cycle);

  ByPeriod<ByPlayer<Presence>> presences_;
  ByPlayer<std::vector<TypeFrom>> types_;
  ByPlayer<std::uint32_t> cardsSeen_;
  std::vector<Card> cards_;
};

}  // namespace vok::analysis
