// A picture of the field as SVG: lines, goals, players with their numbers, the ball.
//
// Everything is given in the field frame (see coordinates.h); our goal is on the left, and +y
// points down as on the server's monitor.
#pragma once

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "coordinates.h"

namespace vok {

enum class Ring { NONE, SOLID, DASHED };

struct DrawnPlayer {
  Vector2d pos;
  bool ours = true;
  int number = 0;
  bool goalie = false;     ///< drawn square
  Ring ring = Ring::NONE;  ///< a mark around the player
  std::string note;        ///< small, below the player
};

struct FieldDrawing {
  std::vector<DrawnPlayer> players;  ///< later ones lie above earlier ones
  std::optional<Vector2d> ball;
  std::string caption;  ///< one line below the field
};

/// Writes the picture, 1050 x 680 pixels and scalable. What lies too far outside the field is
/// drawn at the picture's edge.
std::ostream& operator<<(std::ostream& out, const FieldDrawing& drawing);

}  // namespace vok
