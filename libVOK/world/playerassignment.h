// Who the players of a view are that are too far away to show their number, or even their team.
#pragma once

#include <array>
#include <cstddef>
#include <span>

#include "coordinates.h"
#include "sensordata.h"

namespace vok {

/// A player without number as a view shows it. The covariance is that of where it is seen.
struct Unnamed {
  Vector2d pos;
  double xx = 0;
  double xy = 0;
  double yy = 0;
  team_number team = TEAM_UNKNOWN;
  int who = -1;  ///< result: index of the candidate that it must be, -1 when that is open
};

/// A player that was not seen with its number in this view, and where it is expected.
struct Candidate {
  Vector2d pos;
  double xx = 0;
  double xy = 0;
  double yy = 0;
  team_number team = TEAM_US;
  int number = 0;
  bool anywhere = false;  ///< nothing is known of where it is
  bool taken = false;     ///< result: it is one of the unnamed
};

/// Tells for each of the unnamed who it is, where the others and those that are anywhere are
/// unlikely enough.
void assignPlayers(std::span<Unnamed> unnamed, std::span<Candidate> candidates);

}  // namespace vok
