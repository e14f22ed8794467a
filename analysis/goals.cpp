#include "goals.h"

#include <algorithm>

namespace vok::analysis {

void Stretch::add(const Touching& now, bool isRecovery) {
  latest[static_cast<std::size_t>(touchings) % KEPT] = now;
  ++touchings;
  for (const playing_side side : BOTH_SIDES) {
    if (now.players.of(side).empty()) continue;
    lastOf[side] = now;
    if (isRecovery) recovery[side] = now;
  }
}

namespace {

void findScorer(Goal& goal, Stretch& stretch, Shots& shots) {
  Touching* const last = stretch.last();
  if (last == nullptr) return;
  const PlayerSet scorers = last->players.of(goal.side);
  if (!scorers.empty()) {
    goal.scorer = scorers.first();
    shots.scoredBy(*last, goal.scorer);
    return;
  }
  const std::optional<Touching>& before = stretch.lastOf[goal.side];
  if (before && before->shot != NONE) {
    goal.scorer = before->player();
    shots.scored(before->shot);
    return;
  }
  goal.scorer = last->players.first();
  goal.own = true;
}

}  // namespace

void Goals::announce(int cycle, Period period, playing_side side, Stretch& stretch, Shots& shots) {
  Goal goal;
  goal.cycle = cycle;
  goal.period = period;
  goal.side = side;
  findScorer(goal, stretch, shots);
  goal.touchings = std::min(stretch.touchings, static_cast<int>(Stretch::KEPT));
  for (int i = 0; i < goal.touchings; ++i) {
    const int number = stretch.touchings - goal.touchings + i;
    goal.way[static_cast<std::size_t>(i)] =
        stretch.latest[static_cast<std::size_t>(number) % Stretch::KEPT];
  }
  // Its taker's touching is the first of the stretch.
  if (stretch.touchings > 0 && stretch.touchings <= goal.touchings) goal.setPlay = stretch.setPlay;
  goal.recovery = stretch.recovery[side];
  goals_.push_back(goal);
}

}  // namespace vok::analysis
