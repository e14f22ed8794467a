// Serves one coach from its check-in to its "(bye)".
#pragma once

#include "gamelogkeeper.h"
#include "options.h"
#include "recording.h"
#include "session.h"

namespace vok::practicematch {

/// Each waits for a coach, serves it, prints the report and returns the exit status. `gameLog` gets
/// the match, where it is open.
int serveMatch(const Options& options, Session& session, GameLogKeeper& gameLog);
int serveRecording(const Options& options, const tools::Recording& recording, Session& session);

}  // namespace vok::practicematch
