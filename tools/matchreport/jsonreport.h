// The report of a match as one JSON object. docs/match-report.md describes it.
#pragma once

#include <string>

#include "matchfile.h"

namespace vok::matchreport {

/// One line without its end.
std::string jsonReport(const Match& match);

}  // namespace vok::matchreport
