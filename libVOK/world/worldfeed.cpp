// How the world is fed from a connection. The rest of the world knows records and `ServerState`
// only, so that it can be run without a connection.
#include "Comm.h"
#include "datastore.h"
#include "worldmodel.h"

namespace vok {

ServerState serverStateOf(const Comm& comm) {
  ServerState state;
  state.mode = comm.getPlayMode();
  state.side = comm.getMySide();
  state.ourScore = comm.getOurScore();
  state.otherScore = comm.getOtherScore();
  comm.getLastAction(state.lastAction);
  CycleAction lost;
  comm.getLostAction(lost);
  state.neckTurn = comm.async->processedNeckTurn;
  state.actionLost = lost.command != NO_COMMAND;
  return state;
}

void Worldmodel::knowMyself(const Comm& connection) {
  my.number = connection.getMyNumber();
  my.isGoalie = connection.amIGoalie() ? GOALIE_TRUE : GOALIE_FALSE;
  playMode = connection.getPlayMode();
  ourSide = connection.getMySide();
}

Worldmodel& Worldmodel::adjust() {
  if (comm == nullptr) return *this;

  const ServerState state = serverStateOf(*comm);
  // These came before whatever is still queued, and a change may be to one of the types.
  for (const PlayerType& announced : comm->store->setAside()) takePlayerType(announced);
  for (const TypeChange& change : comm->store->changesSetAside()) adjust(change.record(), state);
  comm->store->clearSetAside();

  while (const SensorData* data = comm->store->takeNext()) adjust(*data, state);
  return *this;
}

}  // namespace vok
