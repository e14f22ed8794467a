// A formation as it is configured: ten places, five of the defensive half and five of the offensive
// one.
#pragma once

#include <array>
#include <string>

#include "coordinates.h"

namespace vok {

/// One place of a formation. As configured, x is in per cent of the band that the team occupies
/// lengthwise, and y a factor of the lateral scale; `PositionEval` makes metres of both.
struct PlayerPos {
  Vector2d Pos;
  double ballforceX = 0;
  double ballforceY = 0;         ///< how much a ball behind pulls the place back
  Vector2d Area;                 ///< half-extents; as configured x in per cent of the band, y in
                                 ///< metres
  Vector2d BMod;                 ///< offset of `Pos` by the ball factor of the place's half
  Vector2d FMod;                 ///< offset of `Pos` by how deep the ball is in our half
  std::array<int, 3> Watches{};  ///< tactical numbers of watched team-mates, -1 for none
  int tact = 0;  ///< 1 and 2: narrower lateral scale; 4: area ends at our offside line
};

/// In the order of the tactical numbers.
using HalfFormation = std::array<PlayerPos, 5>;

/// Reads the keys that begin so, "Form0_def_" for one. A missing one ends the process.
HalfFormation readHalfFormation(const std::string& prefix);

}  // namespace vok
