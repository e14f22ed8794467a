#include "passes.h"

namespace vok::analysis {
namespace {

constexpr double LEAST_LENGTH = 2;  // metres

/// The ball is the other side's behind it, or its own side's offside was called.
bool endsPassOf(playing_side side, const Call& call) {
  switch (call.kind) {
    case CallKind::KICK_IN:
    case CallKind::CORNER_KICK:
    case CallKind::GOAL_KICK:
      return call.side == otherSide(side);
    case CallKind::OFFSIDE:
      return call.side == side;
    default:
      return false;
  }
}

}  // namespace

void Passes::touching(const Touching* before, const Touching& now) {
  if (before == nullptr || !before->isSingle() || before->shot != NONE || !now.isSingle()) return;
  const int from = before->player();
  const int to = now.player();
  if (from == to || !(distance(before->place, now.place) >= LEAST_LENGTH)) return;
  const bool completed = sideOf(from) == sideOf(to);
  passes_.push_back({before->cycle, before->period, from, to, before->place, now.place,
                     completed ? PassResult::COMPLETED : PassResult::INTERCEPTED});
  if (!completed) {
    counts_.in(before->period, [from](auto& counts) { ++counts[from].intercepted; });
    return;
  }
  counts_.in(before->period, [from](auto& counts) { ++counts[from].completed; });
  network_.in(before->period, [from, to](auto& network) {
    ++network[from][static_cast<std::size_t>(shirtOf(to) - 1)];
  });
}

void Passes::interruption(const Touching* last, const Call& call) {
  if (last == nullptr || !last->isSingle() || last->shot != NONE) return;
  const int from = last->player();
  if (!endsPassOf(sideOf(from), call)) return;
  passes_.push_back(
      {last->cycle, last->period, from, NONE, last->place, last->place, PassResult::OUT});
  counts_.in(last->period, [from](auto& counts) { ++counts[from].out; });
}

}  // namespace vok::analysis
