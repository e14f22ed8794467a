// The practice match server: stands in for the simulator server on the online coach's port.
#include <csignal>

#include "commandline.h"
#include "options.h"
#include "recording.h"
#include "serve.h"
#include "session.h"

using namespace vok;
using namespace vok::practicematch;

namespace {

// The match server has no server to say "(bye)" to, so that a flag of its own is enough.
void requestStop(int) {
  stopRequested = 1;
}

void catchSignals() {
  struct sigaction action {};
  action.sa_handler = requestStop;
  sigemptyset(&action.sa_mask);
  sigaction(SIGINT, &action, nullptr);
  sigaction(SIGTERM, &action, nullptr);
}

int fail(const std::string& reason, int status = tools::BAD_ARGUMENT) {
  return tools::fail("practicematch", reason, status);
}

}  // namespace

int main(int argc, char** argv) {
  Options options;
  if (const auto status = readOptions(argc, argv, options)) return *status;

  tools::Recording recording;
  std::string error;
  if (!options.replay.empty() && !tools::readFile(options.replay, recording, error)) {
    return fail("--replay " + options.replay + ": " + error);
  }
  if (!options.replay.empty() && options.synch && !recording.synchronous()) {
    return fail("--synch: " + options.replay + " was recorded in real time");
  }
  catchSignals();
  Session session;
  if (!session.open(options.match.port, error)) {
    return fail("port " + std::to_string(options.match.port) + ": " + error, 1);
  }
  if (!options.log.empty() && !session.logTo(options.log)) {
    return fail("--log " + options.log + ": cannot be opened");
  }
  GameLogKeeper gameLog;
  if (!options.gameLog.empty() && !gameLog.open(options.gameLog, error)) {
    return fail("--game-log " + options.gameLog + ": " + error);
  }
  return options.replay.empty() ? serveMatch(options, session, gameLog)
                                : serveRecording(options, recording, session);
}
