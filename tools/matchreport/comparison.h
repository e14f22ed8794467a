// Two sources of one match, or the matches of two folders, side by side.
#pragma once

#include <ostream>
#include <string>

#include "options.h"

namespace vok::matchreport {

/// Reads the two sources of the command line and writes what differs. Returns the exit status.
int compare(const Options& options, std::ostream& out);

}  // namespace vok::matchreport
