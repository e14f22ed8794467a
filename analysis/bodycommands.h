// Holes and doubles: whether a player gave one command for its body in every cycle, as a text log
// tells.
//
// A hole is a cycle between the player's first body command and its last one without such a
// command; instants in which the clock stands are none. A double is a further one in the same
// instant: the server takes one only.
#pragma once

#include <algorithm>
#include <cmath>
#include <vector>

#include "presences.h"

namespace vok::analysis {

class BodyCommands {
 public:
  static constexpr std::size_t MAX_SPANS = 1024;  ///< of holes of one player that are kept

  explicit BodyCommands(const MatchRules& rules) : rules_(rules) {}

  /// `count` commands of a player in an instant; the clock stands in those with `standing` > 0. To
  /// be told in the order of time; what goes back in time does not count.
  void commands(int player, int cycle, int standing, int count) {
    State& state = players_[player];
    const bool again = cycle == state.cycle && standing == state.standing;
    if (cycle < state.cycle || (cycle == state.cycle && standing < state.standing)) return;
    const bool first = state.cycle == NONE;
    const int further = again ? count : count - 1;
    doubles_.in(periodOf(cycle, rules_), [&](ByPlayer<int>& n) { n[player] += further; });
    // While the clock stands, its cycle began without a command, if there was none before.
    const int end = standing > 0 ? cycle + 1 : cycle;
    if (!first && state.next < end) addHoles(player, {state.next, end - 1});
    state.cycle = cycle;
    state.standing = standing;
    state.next = std::max(state.next, cycle + 1);
  }

  int holes(Period period, int player) const { return holes_[period][player]; }
  int doubles(Period period, int player) const { return doubles_[period][player]; }
  /// The holes, those in a row together.
  const std::vector<Span>& spans(int player) const { return players_[player].spans; }
  /// The cycle of the last command; `NONE` without any.
  int last(int player) const { return players_[player].cycle; }

 private:
  struct State {
    int cycle = NONE;
    int standing = 0;
    int next = NONE;  ///< the first cycle that is not decided
    std::vector<Span> spans;
  };

  void addHoles(int player, Span span) {
    std::vector<Span>& spans = players_[player].spans;
    if (spans.size() < MAX_SPANS) spans.push_back(span);
    const double half = std::floor(rules_.halfCycles());
    const auto upTo = [&](double cycle) {  // cycles of the span up to this one
      return std::max(0.0, std::min<double>(span.last, cycle) - span.first + 1);
    };
    const double all = upTo(span.last);
    add(player, Period::FIRST_HALF, upTo(half));
    add(player, Period::SECOND_HALF, upTo(2 * half) - upTo(half));
    add(player, Period::EXTRA_TIME, all - upTo(2 * half));
  }
  void add(int player, Period period, double cycles) {
    holes_.in(period, [&](ByPlayer<int>& n) { n[player] += static_cast<int>(cycles); });
  }

  MatchRules rules_;
  ByPlayer<State> players_;
  ByPeriod<ByPlayer<int>> holes_;
  ByPeriod<ByPlayer<int>> doubles_;
};

}  // namespace vok::analysis
