#include "season.h"

#include <algorithm>
#include <tuple>

namespace vok::matchreport {

using analysis::Goal;
using analysis::Period;

void Season::add(const analysis::MatchAnalysis& match) {
  ++matches_;
  for (const playing_side side : analysis::BOTH_SIDES) add(match, side);
}

void Season::add(const analysis::MatchAnalysis& match, playing_side side) {
  const analysis::Score& score = match.lastScore();
  const playing_side other = analysis::otherSide(side);
  TeamRecord& team = teams_[score.names[side]];
  team.name = score.names[side];
  const int scored = score.goals[side];
  const int conceded = score.goals[other];
  ++(scored > conceded ? team.won : scored == conceded ? team.drawn : team.lost);
  team.scored += scored;
  team.conceded += conceded;
  for (const Goal& goal : match.goals.all()) {
    if (goal.side != side || goal.scorer == analysis::NONE) continue;
    ++(goal.own ? team.ownGoals : team.scorers[analysis::shirtOf(goal.scorer)]);
  }
  for (std::size_t i = 0; i < SIDE_NUMBERS; ++i) {
    team.own[i].add(sideNumber(i).of(match, Period::WHOLE, side));
    team.others[i].add(sideNumber(i).of(match, Period::WHOLE, other));
  }
}

std::vector<const TeamRecord*> Season::table() const {
  std::vector<const TeamRecord*> table;
  for (const auto& [name, team] : teams_) table.push_back(&team);
  const auto rank = [](const TeamRecord* team) {
    return std::tuple(-team->points(), team->conceded - team->scored, -team->scored);
  };
  std::stable_sort(table.begin(), table.end(),
                   [&rank](auto* a, auto* b) { return rank(a) < rank(b); });
  return table;
}

}  // namespace vok::matchreport
