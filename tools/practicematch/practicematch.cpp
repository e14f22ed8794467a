// The practice match server: stands in for the simulator server on the online coach's port.
#include <csignal>
#include <fstream>
#include <iostream>

#include "options.h"
#include "recording.h"
#include "serve.h"
#include "session.h"

using namespace vok::practice;
using vok::Recording;

namespace {

constexpr int BAD_ARGUMENT = 2;

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

int fail(const std::string& reason, int status) {
  std::cerr << "practicematch: " << reason << std::endl;
  return status;
}

bool readRecording(const std::string& file, Recording& recording, std::string& error) {
  if (file == "-") return recording.read(std::cin, error);
  std::ifstream in(file);
  if (in) return recording.read(in, error);
  error = "cannot be opened";
  return false;
}

}  // namespace

int main(int argc, char** argv) {
  std::string error;
  const auto options = readOptions(argc, argv, error);
  if (!options) return fail(error, BAD_ARGUMENT);
  if (options->help) {
    std::cout << helpText();
    return 0;
  }

  Recording recording;
  if (!options->replay.empty() && !readRecording(options->replay, recording, error)) {
    return fail("--replay " + options->replay + ": " + error, BAD_ARGUMENT);
  }
  if (!options->replay.empty() && options->synch && !recording.synchronous()) {
    return fail("--synch: " + options->replay + " was recorded in real time", BAD_ARGUMENT);
  }
  catchSignals();
  Session session;
  if (!session.open(options->match.port, error)) {
    return fail("port " + std::to_string(options->match.port) + ": " + error, 1);
  }
  if (!options->log.empty() && !session.logTo(options->log)) {
    return fail("--log " + options->log + ": cannot be opened", BAD_ARGUMENT);
  }
  return options->replay.empty() ? serveMatch(*options, session)
                                 : serveRecording(*options, recording, session);
}
