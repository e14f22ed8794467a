// Reads several matches at once.
//
// Each of some threads reads a match, and then the next one that nobody has begun. A match that was
// read waits until those before it have gone to the outputs; whoever completes the one whose turn
// it is hands it on, and those behind it that wait. A thread begins no match that would have to
// wait behind more than a few, so memory does not grow with the number of matches.
#pragma once

#include <cstddef>
#include <vector>

#include "outputs.h"
#include "sources.h"

namespace vok::matchreport {

/// Reads all sources and hands each match to every output, in the order of the sources, with a line
/// on standard error for what is wrong with a source. False when one could not be read.
bool readMatches(const std::vector<Source>& sources, int jobs, const Outputs& outputs);

}  // namespace vok::matchreport
