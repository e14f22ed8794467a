// The report of several matches for a terminal of 80 columns.
#pragma once

#include <ostream>

#include "season.h"

namespace vok::matchreport {

/// The league table, who scored, and the means of the team `we`, or of all teams when it is none of
/// them.
void writeSeason(const Season& season, const std::string& we, std::ostream& out);

}  // namespace vok::matchreport
