#include "onlinecoach.h"

#include <array>
#include <cstdlib>
#include <iostream>

#include "Config.h"
#include "cycleloop.h"
#include "matchrecorder.h"
#include "stopsignals.h"

namespace vok {

namespace {

// What a failed check-in tells the user, by `comm_error`, of which there are seven. When the socket
// cannot be made or the host is unknown, the connection writes the reason, and the error is
// unspecified here.
constexpr std::array<const char*, 7> CHECKIN_MESSAGES = {
    nullptr,
    "Onlinecoach: unspecified error when initializing !",
    "Onlinecoach: could not find server's host !",
    "Onlinecoach: could not create and bind socket !",
    "Onlinecoach: could not deliver checkin message to server !",
    "Onlinecoach: did not receive response from server !",
    "Onlinecoach: could not parse init response !"};

void readConfig(const char* fileName) {
  if (Config::readFile(fileName)) return;
  std::cerr << "PANIC: Could not read config file: " << fileName << "\n";
  std::exit(-1);
}

/// The recording of the match; null without "record_file". Not a member of the coach, so that it is
/// completed, too, when std::exit ends the program; and at namespace scope, so that it outlives a
/// coach that is static in a function.
std::unique_ptr<MatchRecorder> matchRecorder;

}  // namespace

Onlinecoach::Onlinecoach(const char* team, const char* host, int port, const char* agentConfFile,
                         const char* /*traceConfFile*/, bool zeltraMode) {
  readConfig(agentConfFile);
  comm =
      std::make_unique<Comm>(team, CLIENT_ONLINECOACH, host, port, 0, zeltraMode, 7, 7, SIDE_LEFT);
  checkIn();
}

Onlinecoach::Onlinecoach(const char* team, Link& link, const char* agentConfFile) {
  readConfig(agentConfFile);
  comm = std::make_unique<Comm>(team, CLIENT_ONLINECOACH, link, 0, false, 7, 7, SIDE_LEFT);
  checkIn();
}

void Onlinecoach::checkIn() {
  wantsSummary = Config::getOptionalInt("summary", 0) == 1;
  if (const std::string file = Config::getOptionalText("record_file", ""); !file.empty()) {
    matchRecorder = std::make_unique<MatchRecorder>(file);
    comm->record(*matchRecorder);
  }
  const comm_error result = comm->isServerAlive() ? comm->connect() : COMM_ERROR;
  if (result == COMM_OK) {
    if (matchRecorder != nullptr) matchRecorder->start();
    world = std::make_unique<Worldmodel>(comm.get());
  } else {
    std::cerr << CHECKIN_MESSAGES[result] << "\n";
  }
}

Onlinecoach::~Onlinecoach() {
  world.reset();
  comm.reset();
  matchRecorder.reset();
}

void Onlinecoach::coach() {
  if (!comm->isServerAlive() || world == nullptr) {
    std::cerr << "Onlinecoach: could not connect to sserver, closing down\n";
    return;
  }
  while (comm->isServerAlive() && !comm->isGameOver() && !isStopRequested()) {
    comm->drainSocket();
    if (wantsSummary) cycles.setThinking(comm->async->thinking);
    step();
    if (wantsSummary) cycles.setThinking(comm->async->thinking);
  }
  if (comm->isGameOver()) cycles.follow(comm->getServerTime());
}

void Onlinecoach::step() {
  if (!takeCycle(*comm, *world)) return;
  cycles.follow(comm->getServerTime());
  analyze();
  // The loop goes by the latest call, which may have come behind the view of this cycle, so that a
  // command is not sent into running play; analyze and act decide by the mode of the world's view,
  // which fits the positions that they see.
  if (comm->getPlayMode() == PLAY_MODE_PLAY_ON) {
    actInPlay();
  } else {
    act();
  }
  endCycle(*comm);
}

}  // namespace vok
