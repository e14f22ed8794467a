#include "matchtable.h"

#include <cmath>

#include "page.h"
#include "pagetext.h"
#include "reporttables.h"
#include "tablewriter.h"

namespace vok::matchreport {

using namespace analysis;

MatchTable::Values MatchTable::valuesOf(const Match& match, playing_side side) {
  const MatchAnalysis& all = match.analysis;
  const SideCounts counts = sideCounts(all, Period::WHOLE, side);
  Values values;
  values.goals = all.lastScore().goals[side];
  values.against = all.lastScore().goals[otherSide(side)];
  values.shots = counts.shots.total;
  values.onTarget = counts.shots.onTarget;
  values.possession = all.possession.share(Period::WHOLE, side);
  values.passes = counts.passes.completed;
  values.tried = counts.passes.tried();
  values.won = counts.recoveries;
  values.entries = all.entries.of(Period::WHOLE, side);
  values.metres = all.distances.of(Period::WHOLE, side);
  return values;
}

void MatchTable::add(const Match& match, const std::string& page) {
  Row row;
  row.page = page;
  row.date = match.key.substr(0, match.key.find(' '));
  for (const playing_side side : BOTH_SIDES) {
    row.names[side] = teamName(match.analysis, side);
    row.values[side] = valuesOf(match, side);
  }
  rows_.push_back(row);
}

std::map<std::string, MatchTable::TeamSum> MatchTable::teams() const {
  std::map<std::string, TeamSum> teams;
  for (const Row& row : rows_) {
    for (const playing_side side : BOTH_SIDES) {
      const Values& values = row.values[side];
      TeamSum& team = teams[row.names[side]];
      ++team.matches;
      team.wins += values.goals > values.against ? 1 : 0;
      team.draws += values.goals == values.against ? 1 : 0;
      if (!isAbsent(values.possession)) {
        ++team.possessions;
        team.sum.possession += values.possession;
      }
      team.sum.goals += values.goals;
      team.sum.against += values.against;
      team.sum.shots += values.shots;
      team.sum.onTarget += values.onTarget;
      team.sum.passes += values.passes;
      team.sum.tried += values.tried;
      team.sum.won += values.won;
      team.sum.entries += values.entries;
      team.sum.metres += values.metres;
    }
  }
  return teams;
}

void MatchTable::writeMatches(std::string& out) const {
  TableWriter table(out, "",
                    {"date", "match", "shots", "on target", "possession, %", "passes, %",
                     "balls won", "entries", "distance, km"});
  for (const Row& row : rows_) {
    const auto both = [&row](auto value) {
      return shown(value(row.values[SIDE_LEFT])) + " : " + shown(value(row.values[SIDE_RIGHT]));
    };
    table.row({escaped(row.date),
               "<a href='" + escaped(row.page) + "'>" + row.names[SIDE_LEFT] + " " +
                   both([](const Values& v) { return v.goals; }) + " " + row.names[SIDE_RIGHT] +
                   "</a>",
               both([](const Values& v) { return v.shots; }),
               both([](const Values& v) { return v.onTarget; }),
               both([](const Values& v) { return 100 * v.possession; }),
               both([](const Values& v) { return 100 * v.passes / v.tried; }),
               both([](const Values& v) { return v.won; }),
               both([](const Values& v) { return v.entries; }),
               both([](const Values& v) { return v.metres / 1000; })});
  }
  table.end();
}

void MatchTable::writeTeams(std::string& out) const {
  TableWriter table(
      out, "",
      {"team", "matches", "won", "drawn", "lost", "goals", "against", "shots", "on target",
       "possession, %", "passes, %", "balls won", "entries", "distance, km"});
  for (const auto& [name, team] : teams()) {
    const Values& sum = team.sum;
    const auto mean = [n = team.matches](double value) { return shown(value / n, 2); };
    table.row({name, std::to_string(team.matches), std::to_string(team.wins),
               std::to_string(team.draws), std::to_string(team.matches - team.wins - team.draws),
               mean(sum.goals), mean(sum.against), mean(sum.shots), mean(sum.onTarget),
               shown(100 * sum.possession / team.possessions), shown(100 * sum.passes / sum.tried),
               mean(sum.won), mean(sum.entries), mean(sum.metres / 1000)});
  }
  table.end();
}

std::string MatchTable::page() const {
  std::string out;
  beginPage(out, std::to_string(rows_.size()) + " matches");
  out += "<h1>" + std::to_string(rows_.size()) +
         " matches</h1>\n<p class='about'>Two numbers are those of the team named first and of the "
         "other one. Each match leads to its own page.</p>\n<h2>Matches</h2>\n";
  writeMatches(out);
  out +=
      "<h2>Teams</h2>\n<p class='about'>Means of a match; of passes the share of all that were "
      "tried.</p>\n";
  writeTeams(out);
  out += "</body>\n</html>\n";
  return out;
}

}  // namespace vok::matchreport
