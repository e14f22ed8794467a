// Finds say messages in texts of any kind.
#pragma once

#include <functional>
#include <iosfwd>
#include <string_view>
#include <vector>

#include "audiomsg.h"

namespace vok::saydecode {

/// The messages in a run of characters of the code, first to last, unread. Anything with a valid
/// checksum is one when it fills the run, and a coach's also within it. A damaged one is
/// recognised only as a run that has a coach's flag and exactly a coach's length.
std::vector<AudioMsg> findMessages(std::string_view run);

/// Reads to the end, in constant memory, and calls `found` with each message and its line (from 1).
void readMessages(std::istream& in, const std::function<void(const AudioMsg&, long)>& found);

}  // namespace vok::saydecode
