#include "reporttables.h"

namespace vok::matchreport {

using namespace analysis;

SideCounts sideCounts(const MatchAnalysis& match, Period period, playing_side side) {
  SideCounts sum;
  for (int shirt = FIRST_SHIRT; shirt <= LAST_SHIRT; ++shirt) {
    const int player = playerOf(side, shirt);
    const PassCounts& passes = match.passes.of(period, player);
    sum.passes.completed += passes.completed;
    sum.passes.intercepted += passes.intercepted;
    sum.passes.out += passes.out;
    const ActionCounts& actions = match.actions.of(period, player);
    sum.actions.touches += actions.touches;
    sum.actions.catches += actions.catches;
    sum.actions.tacklesTried += actions.tacklesTried;
    sum.actions.tacklesWon += actions.tacklesWon;
    sum.dribbles += match.dribbles.of(period, player);
    sum.recoveries += match.recoveries.of(period, player);
  }
  for (const Shot& shot : match.shots.all()) {
    if (shot.side() != side || (period != Period::WHOLE && shot.period != period)) continue;
    ++sum.shots.total;
    sum.shots.onTarget += shot.onTarget ? 1 : 0;
    sum.shots.goals += shot.goal ? 1 : 0;
  }
  return sum;
}

std::string_view outcomeName(ShotOutcome outcome) {
  switch (outcome) {
    case ShotOutcome::GOAL:
      return "goal";
    case ShotOutcome::SAVED:
      return "saved";
    case ShotOutcome::BLOCKED:
      return "blocked";
    case ShotOutcome::OFF_TARGET:
      return "off_target";
    case ShotOutcome::OTHER:
      break;
  }
  return "other";
}

std::string_view outcomeName(SetPlayOutcome outcome) {
  switch (outcome) {
    case SetPlayOutcome::GOAL:
      return "goal";
    case SetPlayOutcome::SHOT:
      return "shot";
    case SetPlayOutcome::LOST:
      return "lost";
    case SetPlayOutcome::KEPT:
      return "kept";
    case SetPlayOutcome::NOT_TAKEN:
      break;
  }
  return {};
}

std::string_view resultName(KickResult result) {
  if (result == KickResult::UNKNOWN) return {};
  return result == KickResult::GOAL ? "goal" : "miss";
}

std::string_view resultName(PassResult result) {
  if (result == PassResult::OUT) return "out";
  return result == PassResult::COMPLETED ? "completed" : "intercepted";
}

std::string_view periodName(Period period) {
  static constexpr std::array<std::string_view, ALL_PERIODS.size()> NAMES = {"match", "first",
                                                                             "second", "extra"};
  return NAMES[static_cast<std::size_t>(period)];
}

int goalsIn(const MatchAnalysis& match, Period period, playing_side side) {
  if (period == Period::WHOLE) return match.lastScore().goals[side];
  int goals = 0;
  for (const Goal& goal : match.goals.all()) {
    goals += goal.side == side && goal.period == period ? 1 : 0;
  }
  return goals;
}

bool hasPeriod(const MatchAnalysis& match, Period period) {
  if (period == Period::WHOLE) return true;
  return match.lastCycle() > 0 && periodOf(match.lastCycle(), match.rules()) >= period;
}

}  // namespace vok::matchreport
