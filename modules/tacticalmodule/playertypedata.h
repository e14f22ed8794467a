// What is believed of the opponents' heterogeneous types.
#pragma once

#include <vector>

#include "pitch.h"

namespace vok {

/// Whether an opponent can be of a type.
enum PlayerTypeState { PTS_IMPOSSIBLE = 0, PTS_SURE = 1, PTS_UNKNOWN = 2 };

/// The belief about one type for one opponent.
struct PlayerTypeData {
  PlayerTypeState state = PTS_UNKNOWN;
  int score = 0;  ///< observed steps that fit the type; only the inference from decay counts them
};

/// By shirt number, then by type id.
using TypeBeliefs = Squad<std::vector<PlayerTypeData>>;

}  // namespace vok
