// One match from two sources, number by number.
#pragma once

#include <ostream>
#include <string>

#include "matchanalysis.h"

namespace vok::matchreport {

/// What one source told.
struct Telling {
  std::string source;
  bool complete = false;
  analysis::MatchAnalysis analysis;
};

void writeComparison(const Telling& a, const Telling& b, std::ostream& out);

}  // namespace vok::matchreport
