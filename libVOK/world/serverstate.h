// What the connection knows of the match beyond the record at hand.
#pragma once

#include "asyncinfo.h"
#include "sensordata.h"

namespace vok {

class Comm;

/// The world takes it over with every view and every body sense: the records themselves carry
/// neither the score nor, most of them, the play mode.
struct ServerState {
  play_mode mode = PLAY_MODE_UNKNOWN;
  playing_side side = SIDE_LEFT;
  int ourScore = 0;
  int otherScore = 0;
  CycleAction lastAction;   ///< what the server is taken to have executed last
  bool actionLost = false;  ///< that action never reached the server
  NeckTurn neckTurn;        ///< how far the neck was told to turn in the cycle before
};

/// The state as it stands now on a connection.
ServerState serverStateOf(const Comm& comm);

}  // namespace vok
