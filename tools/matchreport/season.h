// Several matches: what each team reached in them.
#pragma once

#include <array>
#include <map>
#include <string>
#include <vector>

#include "matchfile.h"
#include "sample.h"
#include "sidenumbers.h"

namespace vok::matchreport {

struct TeamRecord {
  static constexpr int POINTS_OF_A_WIN = 3;

  std::string name;
  int won = 0;
  int drawn = 0;  ///< a penalty shoot-out changes nothing here
  int lost = 0;
  int scored = 0;
  int conceded = 0;
  std::map<int, int> scorers;  ///< goals by shirt number, own goals of the others not included
  int ownGoals = 0;            ///< that the other side scored for it
  std::array<Sample, SIDE_NUMBERS> own;     ///< its numbers in each match
  std::array<Sample, SIDE_NUMBERS> others;  ///< those of its opponents

  int played() const { return won + drawn + lost; }
  int points() const { return POINTS_OF_A_WIN * won + drawn; }
};

class Season {
 public:
  void add(const analysis::MatchAnalysis& match);

  int matches() const { return matches_; }
  /// By points, then by the difference of goals, then by goals, then by name.
  std::vector<const TeamRecord*> table() const;

 private:
  void add(const analysis::MatchAnalysis& match, playing_side side);

  int matches_ = 0;
  std::map<std::string, TeamRecord> teams_;
};

}  // namespace vok::matchreport
