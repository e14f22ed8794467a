// The generic online coach: start, check-in and the cycle loop. A team's coach derives from it.
#pragma once

#include <memory>

#include "Comm.h"
#include "cyclecount.h"
#include "worldmodel.h"

namespace vok {

class Onlinecoach {
 public:
  /// Reads the configuration (an unreadable file ends the process with status 255), then checks
  /// in. A failed check-in is reported and leaves `world` null. `traceConfFile` is not read.
  Onlinecoach(const char* team, const char* host, int port, const char* agentConfFile,
              const char* traceConfFile, bool zeltraMode);
  /// The same through a link that exists already (see `Comm`), which must outlast the coach.
  Onlinecoach(const char* team, Link& link, const char* agentConfFile);

  /// What the coach does in a cycle outside normal play.
  virtual void act() = 0;
  /// What it does in a cycle of normal play, in which the server takes almost nothing from a coach.
  virtual void actInPlay() {}
  /// What it computes every cycle.
  virtual void analyze() = 0;
  /// Deletes the world, then the connection.
  virtual ~Onlinecoach();

  Onlinecoach(const Onlinecoach&) = delete;
  Onlinecoach& operator=(const Onlinecoach&) = delete;

  /// Runs the match: returns when it is over or the server is lost.
  void coach();
  /// The loop behind a drain: runs the cycle that has begun, or answers the server.
  void step();

  int getMyNumber() const { return comm->getMyNumber(); }
  const char* getMyTeam() const { return comm->getMyTeam(); }
  playing_side getMySide() const { return comm->getMySide(); }
  // Of the world, hence only after a successful check-in.
  play_mode getPlayMode() const { return world->playMode; }
  long getTime() const { return world->time; }
  void say(AudioMsg& message) { comm->say(message); }
  void sendDone() { comm->sendDone(); }
  bool getNextMsg(AudioMsg& message) { return comm->getNextMsg(message); }
  comm_error parseCheckinResponse(const char* msg) { return comm->parseCheckinResponse(msg); }

  std::unique_ptr<Worldmodel> world;  ///< null until the check-in succeeded
  std::unique_ptr<Comm> comm;
  CycleCount cycles;
  bool wantsSummary = false;  ///< configured with "summary"; else `cycles` times no answers

 private:
  void checkIn();
};

}  // namespace vok
