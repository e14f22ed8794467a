#include "seasonreport.h"

#include <algorithm>
#include <iomanip>

#include "printable.h"

namespace vok::matchreport {
namespace {

using Table = std::vector<const TeamRecord*>;

constexpr std::size_t NAME_SHOWN = 20;

Printable shown(const TeamRecord& team) {
  return printable(team.name.empty() ? "null" : std::string_view(team.name).substr(0, NAME_SHOWN));
}

void writeLeague(const Table& table, std::ostream& out) {
  out << "  place   matches  won  drawn  lost    goals  points  team\n";
  int place = 0;
  for (const TeamRecord* const team : table) {
    const std::string goals = std::to_string(team->scored) + ":" + std::to_string(team->conceded);
    out << std::setw(7) << ++place << std::setw(10) << team->played() << std::setw(5) << team->won
        << std::setw(7) << team->drawn << std::setw(6) << team->lost << std::setw(9) << goals
        << std::setw(8) << team->points() << "  " << shown(*team) << '\n';
  }
}

struct Scorer {
  const TeamRecord* team;
  int shirt;
  int goals;
};

void writeScorers(const Table& table, std::ostream& out) {
  std::vector<Scorer> scorers;
  for (const TeamRecord* const team : table) {
    for (const auto& [shirt, goals] : team->scorers) scorers.push_back({team, shirt, goals});
  }
  std::stable_sort(scorers.begin(), scorers.end(),
                   [](const Scorer& a, const Scorer& b) { return a.goals > b.goals; });
  out << "\n  goals  player\n";
  for (const Scorer& scorer : scorers) {
    out << std::setw(7) << scorer.goals << "  " << shown(*scorer.team) << " number " << scorer.shirt
        << '\n';
  }
  for (const TeamRecord* const team : table) {
    if (team->ownGoals == 0) continue;
    out << std::setw(7) << team->ownGoals << "  own goals for " << shown(*team) << '\n';
  }
}

void writeMeans(const TeamRecord& team, std::ostream& out) {
  constexpr int COLUMN = 22;
  const int matches = team.played();
  out << '\n'
      << shown(team) << ", mean of " << matches << (matches == 1 ? " match" : " matches")
      << " with its 95 % interval\n"
      << std::setw(20) << "" << std::setw(COLUMN) << "own" << std::setw(COLUMN) << "opponents'"
      << '\n';
  for (std::size_t i = 0; i < SIDE_NUMBERS; ++i) {
    const SideNumber& number = sideNumber(i);
    out << std::left << std::setw(20) << number.title << std::right << std::setw(COLUMN)
        << number.shown(team.own[i].estimate()) << std::setw(COLUMN)
        << number.shown(team.others[i].estimate()) << '\n';
  }
}

}  // namespace

void writeSeason(const Season& season, const std::string& we, std::ostream& out) {
  const Table table = season.table();
  out << '\n' << season.matches() << " matches\n";
  writeLeague(table, out);
  writeScorers(table, out);
  const bool isKnown = std::any_of(table.begin(), table.end(),
                                   [&we](const TeamRecord* team) { return team->name == we; });
  for (const TeamRecord* const team : table) {
    if (!isKnown || team->name == we) writeMeans(*team, out);
  }
}

}  // namespace vok::matchreport
