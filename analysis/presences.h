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
  int type = NONE;
};

struct Card {
  int cycle = 0;
  int player = NONE;
  bool red = false;
};

struct Presence {
  bool ever = false;
  Span span;                    ///< the first and the last cycle on the field
  std::vector<Span> away;       ///< the spans in between without the player
  std::vector<TypeFrom> types;  ///< every entry behind the first is a substitution
};

class Presences {
 public:
  void reserve();
  void frame(const Step& step);

  const Presence& of(int player) const { return presences_[player]; }
  const std::vector<Card>& cards() const { return cards_; }

 private:
  static constexpr std::size_t ROOM = 32;  // changes of one player

  void see(int player, const FramePlayer& shown, int cycle);
  void card(int player, const FramePlayer& shown, int cycle);

  ByPlayer<Presence> presences_;
  ByPlayer<Span> open_;  ///< without the player, until the last frame; a first of -1 is none
  ByPlayer<std::uint32_t> cardsSeen_;
  std::vector<Card> cards_;
};

}  // namespace vok::analysis
