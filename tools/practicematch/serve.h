// Serves one coach from its check-in to its "(bye)".
#pragma once

#include "options.h"
#include "recording.h"
#include "session.h"

namespace vok::practicematch {

/// Each waits for a coach, serves it, prints the report and returns the exit status.
int serveMatch(const Options& options, Session& session);
int serveRecording(const Options& options, const tools::Recording& recording, Session& session);

}  // namespace vok::practicematch
