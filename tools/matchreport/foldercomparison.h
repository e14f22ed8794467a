// A team before and after a change, from the matches of two folders.
//
// Matches against the same opponent are paired, those with the same seed where the names of their
// files tell one ("seed7", "seed-7", "seed_7", "seed=7"), otherwise in the order of their names. A
// pair's difference is free of what the opponent and the seed bring, so its interval is narrower.
#pragma once

#include <array>
#include <ostream>
#include <string>
#include <vector>

#include "matchfile.h"
#include "sidenumbers.h"

namespace vok::matchreport {

class FolderComparison {
 public:
  /// `team` is the one whose numbers count; when empty, one that plays in all matches, or else the
  /// left side.
  FolderComparison(std::string before, std::string after, std::string team)
      : names_{std::move(before), std::move(after)}, team_(std::move(team)) {}

  void addBefore(const Match& match) { add(match, 0); }
  void addAfter(const Match& match) { add(match, 1); }

  void write(std::ostream& out) const;

 private:
  using Numbers = std::array<double, SIDE_NUMBERS>;
  struct Played {
    analysis::BySide<std::string> teams;
    analysis::BySide<Numbers> numbers;
    std::string seed;
  };
  /// One match, seen from the team.
  struct Seen {
    std::string opponent;
    std::string seed;
    Numbers own;
    Numbers others;
  };
  using Pairs = std::vector<std::pair<const Seen*, const Seen*>>;

  void add(const Match& match, std::size_t folder);
  std::string commonTeam() const;
  std::vector<Seen> seenBy(const std::string& team, std::size_t folder) const;
  static Pairs paired(const std::vector<Seen>& before, const std::vector<Seen>& after);

  std::array<std::string, 2> names_;
  std::string team_;
  std::array<std::vector<Played>, 2> folders_;
};

/// The seed in a file's name; empty without one.
std::string seedOf(const std::string& name);

}  // namespace vok::matchreport
