// What a single view tells without any memory.
#pragma once

#include <optional>

#include "coordinates.h"
#include "sensordata.h"

namespace vok::seecheck {

/// The place and face direction that fit the landmarks of a view best, in the frame of a team.
struct SingleFit {
  Vector2d pos;
  double face = 0;  ///< radians

  /// Where an object is seen from there: at its distance and direction as they were told.
  Vector2d place(const SensorObject& object) const;
  /// The velocity that an object's changes tell, for an observer of that velocity.
  Vector2d velocity(const SensorObject& object, const Vector2d& own) const;
};

/// The plain weighted least-squares fit to distances and directions, each weighted by its
/// rounding. Nothing with fewer than two landmarks with a distance.
std::optional<SingleFit> fitView(const SensorData& view, playing_side side);

}  // namespace vok::seecheck
