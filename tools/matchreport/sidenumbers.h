// The numbers of a side that reports show side by side: one table for the report of a match, the
// means of several and comparisons.
#pragma once

#include <string>

#include "matchanalysis.h"
#include "sample.h"

namespace vok::matchreport {

struct SideNumber {
  const char* title;
  double scale;  ///< what is shown is the value times this
  int decimals;
  const char* unit;
  double (*of)(const analysis::MatchAnalysis& match, analysis::Period period, playing_side side);

  /// "-" for an absent one.
  std::string shown(double value) const;
  /// A mean of whole numbers has a decimal.
  std::string mean(double value) const;
  /// "12.5 +- 3.1"
  std::string shown(const Estimate& estimate) const;
};

inline constexpr std::size_t SIDE_NUMBERS = 13;

const SideNumber& sideNumber(std::size_t index);

/// A number with this many decimals; "-" for an absent one.
std::string fixed(double value, int decimals);

}  // namespace vok::matchreport
