// The messages of the coaches of a match, as their recordings or the server's text log have them.
#pragma once

#include <string>
#include <vector>

#include "coachmessage.h"
#include "frame.h"

namespace vok::matchreport {

/// Places are in the log's frame.
struct HeardMessage {
  int cycle = 0;
  playing_side side = SIDE_UNKNOWN;
  CoachMessage said;
};

/// All undamaged messages in the "(say ...)" of a file, plain or compressed, each once, in the
/// order of their cycles. Empty where the file cannot be read.
std::vector<HeardMessage> coachMessages(const std::string& file);

}  // namespace vok::matchreport
