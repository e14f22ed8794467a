// Finds say messages in texts of any kind.
#pragma once

#include <functional>
#include <iosfwd>
#include <string_view>
#include <vector>

#include "audiomsg.h"

namespace vok::saydecode {

/// The messages in a run of code characters, in their order, none of them read yet. A run with a
/// valid checksum is a message as a whole; coach's messages are also found within a longer run. A
/// damaged message is recognised only when it is a whole run with the coach's flag and length.
std::vector<AudioMsg> findMessages(std::string_view run);

/// Reads to the end, in constant memory, and calls `found` with each message and its line (from 1).
void readMessages(std::istream& in, const std::function<void(const AudioMsg&, long)>& found);

}  // namespace vok::saydecode
