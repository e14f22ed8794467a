// Requests to stop: a client that talks to a server says "(bye)" to it before it ends.
#pragma once

#include <csignal>

namespace vok {

/// Makes SIGINT, SIGTERM and SIGHUP set `isStopRequested`, so that the main loop can leave the
/// server in order. Until `stopInOrder` is called they end the process at once with status 0.
/// Neither a closed standard error nor SIGALRM ends the process. For the program's main.
void stopOnSignals();

/// From now on a request to stop is left to the main loop: there is a server to say "(bye)" to. It
/// and SIGALRM are held back until the client waits, so that none can come just before a wait and
/// be missed by it.
void stopInOrder();

/// Whether a signal has asked the program to stop.
bool isStopRequested();

/// The signal mask of waits.
const sigset_t& signalsInWaits();

}  // namespace vok
