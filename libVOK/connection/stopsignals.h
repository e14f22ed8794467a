// Requests to stop: a client that talks to a server says "(bye)" to it before it ends.
#pragma once

namespace vok {

/// Makes SIGINT, SIGTERM and SIGHUP end receive waits and set `isStopRequested`, so that the main
/// loop can leave the server in order. Until `stopInOrder` is called they end the process at once
/// with status 0. Neither a closed standard error nor SIGALRM ends the process. For the program's
/// main.
void stopOnSignals();

/// From now on a request to stop is left to the main loop: there is a server to say "(bye)" to.
void stopInOrder();

/// Whether a signal has asked the program to stop.
bool isStopRequested();

}  // namespace vok
