// Worlds without a server.
#pragma once

#include "Config.h"
#include "constants.h"
#include "worldmodel.h"

namespace vok::test {

/// A world in which nobody was ever seen, of so many player types and substitution rings.
inline Worldmodel newWorld(int types = 0, const char* rings = "11", Comm* comm = nullptr) {
  playerParams.player_types = types;
  setEntry("world_maxPlayersOurTeam", rings);
  setEntry("world_maxPlayersOtherTeam", rings);
  return Worldmodel(comm);
}

inline bool near(const Vector2d& a, const Vector2d& b) {
  return (a - b).getLength() < 1e-6;
}

}  // namespace vok::test
