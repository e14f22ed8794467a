#include "foldercomparison.h"

#include <algorithm>
#include <cmath>
#include <filesystem>
#include <iomanip>

#include "printable.h"
#include "scanner.h"

namespace vok::matchreport {

using analysis::BOTH_SIDES;
using analysis::otherSide;
using analysis::Period;

std::string seedOf(const std::string& name) {
  static constexpr std::string_view HEAD = "seed";
  const std::size_t at = name.rfind(HEAD);
  if (at == std::string::npos) return {};
  std::string_view seed = std::string_view(name).substr(at + HEAD.size());
  if (!seed.empty() && (seed[0] == '-' || seed[0] == '_' || seed[0] == '=')) seed.remove_prefix(1);
  Scanner in(seed);
  std::string_view digits;
  return in.run(isDigit, digits) ? std::string(digits) : std::string();
}

void FolderComparison::add(const Match& match, std::size_t folder) {
  Played played;
  for (const playing_side side : BOTH_SIDES) {
    played.teams[side] = match.analysis.lastScore().names[side];
    for (std::size_t i = 0; i < SIDE_NUMBERS; ++i) {
      played.numbers[side][i] = sideNumber(i).of(match.analysis, Period::WHOLE, side);
    }
  }
  played.seed = seedOf(std::filesystem::path(match.source).filename().string());
  folders_[folder].push_back(played);
}

std::string FolderComparison::commonTeam() const {
  const auto playsAlways = [this](const std::string& team) {
    return std::all_of(folders_.begin(), folders_.end(), [&](const std::vector<Played>& all) {
      return std::all_of(all.begin(), all.end(), [&](const Played& played) {
        return played.teams[SIDE_LEFT] == team || played.teams[SIDE_RIGHT] == team;
      });
    });
  };
  for (const std::vector<Played>& all : folders_) {
    if (all.empty()) continue;
    for (const playing_side side : BOTH_SIDES) {
      if (playsAlways(all.front().teams[side])) return all.front().teams[side];
    }
  }
  return {};
}

/// Without a team as the left side.
std::vector<FolderComparison::Seen> FolderComparison::seenBy(const std::string& team,
                                                             std::size_t folder) const {
  std::vector<Seen> seen;
  for (const Played& played : folders_[folder]) {
    const bool isRight = !team.empty() && played.teams[SIDE_LEFT] != team;
    const playing_side side = isRight ? SIDE_RIGHT : SIDE_LEFT;
    if (isRight && played.teams[SIDE_RIGHT] != team) continue;
    seen.push_back({played.teams[otherSide(side)], played.seed, played.numbers[side],
                    played.numbers[otherSide(side)]});
  }
  return seen;
}

FolderComparison::Pairs FolderComparison::paired(const std::vector<Seen>& before,
                                                 const std::vector<Seen>& after) {
  Pairs pairs;
  std::vector<bool> taken(after.size(), false);
  for (const Seen& one : before) {
    for (std::size_t i = 0; i < after.size(); ++i) {
      if (taken[i] || after[i].opponent != one.opponent || after[i].seed != one.seed) continue;
      taken[i] = true;
      pairs.emplace_back(&one, &after[i]);
      break;
    }
  }
  return pairs;
}

void FolderComparison::write(std::ostream& out) const {
  constexpr int TITLE = 24;
  constexpr int COLUMN = 14;
  const std::string team = team_.empty() ? commonTeam() : team_;
  const std::array seen = {seenBy(team, 0), seenBy(team, 1)};
  const Pairs pairs = paired(seen[0], seen[1]);
  const bool inPairs = pairs.size() >= 2;
  out << printable(team.empty() ? "The left side" : team)
      << ", means and their difference with its "
      << "95 % interval\n";
  for (std::size_t i = 0; i < seen.size(); ++i) {
    out << (i == 0 ? "before  " : "after   ") << printable(names_[i]) << ", " << seen[i].size()
        << (seen[i].size() == 1 ? " match" : " matches");
    if (seen[i].size() < folders_[i].size()) {
      out << " (" << folders_[i].size() - seen[i].size() << " of other teams left out)";
    }
    out << '\n';
  }
  out << "Pairs with the same opponent and seed: " << pairs.size()
      << ". The differences are those of " << (inPairs ? "the pairs.\n" : "the means.\n");

  const auto writeRows = [&](const char* whose, Numbers Seen::*numbers) {
    out << '\n'
        << std::left << std::setw(TITLE) << whose << std::right << std::setw(COLUMN) << "before"
        << std::setw(COLUMN) << "after" << std::setw(2 * COLUMN) << "difference\n";
    for (std::size_t i = 0; i < SIDE_NUMBERS; ++i) {
      std::array<Sample, 2> samples;
      for (std::size_t folder = 0; folder < samples.size(); ++folder) {
        for (const Seen& one : seen[folder]) samples[folder].add((one.*numbers)[i]);
      }
      Sample differences;
      for (const auto& [before, after] : pairs) {
        differences.add((after->*numbers)[i] - (before->*numbers)[i]);
      }
      const SideNumber& number = sideNumber(i);
      const Estimate change = inPairs ? differences.estimate() : difference(samples[0], samples[1]);
      const bool isSure = std::abs(change.mean) > change.halfWidth;
      out << std::left << std::setw(TITLE) << number.title << std::right << std::setw(COLUMN)
          << number.mean(samples[0].estimate().mean) << std::setw(COLUMN)
          << number.mean(samples[1].estimate().mean) << std::setw(2 * COLUMN - 2)
          << number.shown(change) << (isSure ? " *" : "") << '\n';
    }
  };
  writeRows("own", &Seen::own);
  writeRows("opponents'", &Seen::others);
  out << "\n* the interval is without 0\n";
}

}  // namespace vok::matchreport
