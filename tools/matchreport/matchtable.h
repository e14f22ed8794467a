// The page of several matches: a row for each, and means for each team.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "matchfile.h"

namespace vok::matchreport {

class MatchTable {
 public:
  /// `page` is the address of the match's own page.
  void add(const Match& match, const std::string& page);
  std::size_t size() const { return rows_.size(); }

  std::string page() const;

 private:
  /// Of a side in a match; sums of them are means' numerators.
  struct Values {
    double goals = 0;
    double against = 0;
    double shots = 0;
    double onTarget = 0;
    double possession = 0;  ///< share
    double passes = 0;
    double tried = 0;
    double won = 0;      ///< balls
    double entries = 0;  ///< into the penalty area
    double metres = 0;
  };
  struct Row {
    std::string page;
    std::string date;
    analysis::BySide<std::string> names;
    analysis::BySide<Values> values;
  };
  struct TeamSum {
    int matches = 0;
    int wins = 0;
    int draws = 0;
    int possessions = 0;  ///< matches in which somebody had the ball
    Values sum;
  };

  static Values valuesOf(const Match& match, playing_side side);
  std::map<std::string, TeamSum> teams() const;
  void writeMatches(std::string& out) const;
  void writeTeams(std::string& out) const;

  std::vector<Row> rows_;
};

}  // namespace vok::matchreport
