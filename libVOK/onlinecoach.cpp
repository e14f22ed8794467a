#include "onlinecoach.h"

#include <array>
#include <cstdlib>
#include <iostream>

#include "Config.h"
#include "constants.h"

namespace vok {

namespace {

// What a failed check-in tells the user, by `comm_error`, of which there are seven. A socket that
// cannot be made, be it for an unknown host, is told by the connection and is unspecified here.
constexpr std::array<const char*, 7> CHECKIN_MESSAGES = {
    nullptr,
    "Onlinecoach: unspecified error when initializing !",
    "Onlinecoach: could not find server's host !",
    "Onlinecoach: could not create and bind socket !",
    "Onlinecoach: could not deliver checkin message to server !",
    "Onlinecoach: did not receive response from server !",
    "Onlinecoach: could not parse init response !"};

}  // namespace

Onlinecoach::Onlinecoach(const char* team, const char* host, int port, const char* agentConfFile,
                         const char* /*traceConfFile*/, bool zeltraMode) {
  if (!Config::readFile(agentConfFile)) {
    std::cerr << "PANIC: Could not read config file: " << agentConfFile << "\n";
    std::exit(-1);
  }
  comm =
      std::make_unique<Comm>(team, CLIENT_ONLINECOACH, host, port, 0, zeltraMode, 7, 7, SIDE_LEFT);
  const comm_error result = comm->isServerAlive() ? comm->connect() : COMM_ERROR;
  if (result == COMM_OK) {
    world = std::make_unique<Worldmodel>(comm.get());
  } else {
    std::cerr << CHECKIN_MESSAGES[result] << "\n";
  }
}

Onlinecoach::~Onlinecoach() {
  world.reset();
  comm.reset();
}

void Onlinecoach::coach() {
  if (!comm->isServerAlive() || world == nullptr) {
    std::cerr << "Onlinecoach: could not connect to sserver, closing down\n";
    return;
  }
  while (!comm->isGameOver() && Comm::stopRequested == 0) {
    comm->drainSocket();
    step();
    if (!comm->isServerAlive()) return;
  }
}

void Onlinecoach::step() {
  if (comm->async->takeAct()) {
    world->adjust();
    analyze();
    // Messages and types are matters of interruptions; the latest word on the mode counts.
    if (comm->getPlayMode() != PLAY_MODE_PLAY_ON) act();
    if (SYNCH_MODE) comm->sendDone();
  } else if (comm->async->answerDue()) {
    // No cycle began, but the server waits for an answer.
    comm->async->takeAnswer();
    world->adjust();
    comm->sendDone();
  }
}

}  // namespace vok
