// The report of a match for a terminal of 80 columns.
#pragma once

#include <ostream>

#include "matchfile.h"

namespace vok::matchreport {

/// `we` is the side whose numbers come first and whose players' health is shown.
void writeTextReport(const Match& match, playing_side we, std::ostream& out);

}  // namespace vok::matchreport
