// Where a team stands in play once the ball has rested for long.
#pragma once

#include <optional>
#include <vector>

#include "positioneval.h"
#include "tacticalmodule.h"
#include "worldmodel.h"

namespace vok::formationview {

enum class Role { DEFENCE, MIDFIELD, ATTACK };

struct SettledPlace {
  int number;  ///< tactical
  Role role;
  Vector2d pos;
  Vector2d lo;  ///< of the area of responsibility
  Vector2d hi;
};

struct SettledTeam {
  std::vector<SettledPlace> places;  ///< of the ten field players
  double minX;                       ///< the band that the team occupies
  double maxX;
  double offsideLine;  ///< ours
};

/// Shirt numbers are tactical numbers here.
class Pitch {
 public:
  /// Reads the configuration.
  Pitch();
  Pitch(const Pitch&) = delete;  // its parts point at each other
  Pitch& operator=(const Pitch&) = delete;

  /// The opponents' back line stands at `offside`, or keeps 15 m behind a ball that comes, as far
  /// as from the halfway line to their penalty area. Nothing when a place is no number.
  std::optional<SettledTeam> settle(Vector2d ball, std::optional<double> offside);

 private:
  void runUntilSettled();
  Role roleOf(int n) const;

  Worldmodel world_;
  TacticalModule tactical_;
  PositionEval eval_;
};

}  // namespace vok::formationview
