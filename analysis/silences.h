// When a player fell silent: spans of 50 cycles or more, without a stop of the clock, in which the
// server counted no command of a player on the field.
#pragma once

#include <vector>

#include "presences.h"

namespace vok::analysis {

class Silences {
 public:
  static constexpr int LEAST = 50;              ///< cycles
  static constexpr std::size_t MAX_SPANS = 64;  ///< of one player that are kept

  void reserve() {
    for (auto& spans : spans_.of) spans.reserve(MAX_SPANS);
  }

  void frame(const Step& step) {
    for (int i = 0; i < PLAYERS; ++i) {
      const bool speaks = !step.now.counted || !step.now.players[i].there() ||
                          step.before == nullptr ||
                          step.now.players[i].counts != step.before->players[i].counts;
      if (speaks) heard_[i] = step.now.cycle;
      if (step.now.cycle - heard_[i] < LEAST) continue;
      std::vector<Span>& spans = spans_[i];
      const Span span{heard_[i] + 1, step.now.cycle};
      if (!spans.empty() && spans.back().first == span.first) {
        spans.back() = span;
      } else if (spans.size() < MAX_SPANS) {
        spans.push_back(span);
      }
    }
  }

  const std::vector<Span>& of(int player) const { return spans_[player]; }

 private:
  ByPlayer<int> heard_;  ///< the last cycle in which a command was counted
  ByPlayer<std::vector<Span>> spans_;
};

}  // namespace vok::analysis
