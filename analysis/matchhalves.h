// The parts of a match, and tables that exist for each of them.
#pragma once

#include <array>
#include <cstddef>

#include "matchrules.h"

namespace vok::analysis {

enum class Period { WHOLE, FIRST_HALF, SECOND_HALF, EXTRA_TIME };

inline constexpr std::array ALL_PERIODS = {Period::WHOLE, Period::FIRST_HALF, Period::SECOND_HALF,
                                           Period::EXTRA_TIME};

inline Period periodOf(int cycle, const MatchRules& rules) {
  if (cycle <= rules.halfCycles()) return Period::FIRST_HALF;
  return cycle <= 2 * rules.halfCycles() ? Period::SECOND_HALF : Period::EXTRA_TIME;
}

/// A table of the whole match and one of each of its parts.
template <typename Table>
class ByPeriod {
 public:
  Table& operator[](Period period) { return tables_[static_cast<std::size_t>(period)]; }
  const Table& operator[](Period period) const { return tables_[static_cast<std::size_t>(period)]; }

  /// Makes one change in the table of a part and in that of the whole match.
  template <typename Change>
  void in(Period part, Change change) {
    change((*this)[Period::WHOLE]);
    change((*this)[part]);
  }

 private:
  std::array<Table, ALL_PERIODS.size()> tables_{};
};

}  // namespace vok::analysis
