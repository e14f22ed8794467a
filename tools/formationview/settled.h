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

/// A world with the configured formation. Shirt numbers equal tactical numbers in it.
class Pitch {
 public:
  /// Reads the configuration.
  Pitch();
  Pitch(const Pitch&) = delete;  // its members hold pointers to each other
  Pitch& operator=(const Pitch&) = delete;

  /// Finds the places for a ball that rests at `ball`. The opponents' back line stands at x =
  /// `offside`. By default it is 15 m behind the ball as they see it, but in their own half and not
  /// inside their penalty area. Returns nothing when a place is not a finite number.
  std::optional<SettledTeam> settle(Vector2d ball, std::optional<double> offside);

 private:
  void runUntilSettled(const SensorData& view);
  Role roleOf(int n) const;

  Worldmodel world_;
  TacticalModule tactical_;
  PositionEval eval_;
};

}  // namespace vok::formationview
