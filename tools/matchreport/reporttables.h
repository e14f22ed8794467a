// Sums and names that the reports share.
#pragma once

#include <string_view>

#include "matchanalysis.h"

namespace vok::matchreport {

struct ShotCounts {
  int total = 0;
  int onTarget = 0;
  int goals = 0;  ///< that came from shots, own goals not included
};

/// Of a side's players together.
struct SideCounts {
  analysis::PassCounts passes;
  analysis::ActionCounts actions;
  int dribbles = 0;
  int recoveries = 0;
  ShotCounts shots;
};

SideCounts sideCounts(const analysis::MatchAnalysis& match, analysis::Period period,
                      playing_side side);

inline std::string_view sideLetter(playing_side side) {
  return side == SIDE_LEFT ? "l" : "r";
}

inline int goalieShirt(const analysis::MatchAnalysis& match, playing_side side) {
  return analysis::shirtOf(match.goalies()[side]);
}

std::string_view outcomeName(analysis::ShotOutcome outcome);
/// Empty for a set play that was not taken.
std::string_view outcomeName(analysis::SetPlayOutcome outcome);
/// Empty for one that is not known.
std::string_view resultName(analysis::KickResult result);
std::string_view resultName(analysis::PassResult result);

/// "match", "first", "second" or "extra".
std::string_view periodName(analysis::Period period);

/// What the side scored; those of a part of the match are the announced ones.
int goalsIn(const analysis::MatchAnalysis& match, analysis::Period period, playing_side side);

/// Some frame of the match is in the period.
bool hasPeriod(const analysis::MatchAnalysis& match, analysis::Period period);

}  // namespace vok::matchreport
