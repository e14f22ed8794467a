// The body of every client's main loop, between the drain of the connection and the client's own
// decisions.
#pragma once

#include "Comm.h"
#include "worldmodel.h"

namespace vok {

/// Does with the connection and the world what a drain has made necessary. True when a new cycle
/// has begun: the caller then decides, sends its commands and calls `endCycle`.
///
/// A coach's world takes in the queued records when a cycle begins. A player's takes them in every
/// time, since the senses of one cycle arrive one after the other.
bool takeCycle(Comm& comm, Worldmodel& world);

/// Tells a server in synchronous mode that this client has finished its cycle.
void endCycle(Comm& comm);

}  // namespace vok
