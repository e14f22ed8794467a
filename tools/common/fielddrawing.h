// Pictures of the field as SVG: lines, goals, players with their numbers, areas, the ball.
//
// Everything is given in the field frame (see coordinates.h); our goal is on the left, and +y
// points down as on the server's monitor.
#pragma once

#include <iosfwd>
#include <optional>
#include <string>
#include <vector>

#include "coordinates.h"

namespace vok::tools {

enum class Ring { NONE, SOLID, DASHED };

struct DrawnPlayer {
  Vector2d pos;
  bool ours = true;
  int number = 0;
  bool goalie = false;     ///< drawn square
  Ring ring = Ring::NONE;  ///< a mark around the player
  std::string note;        ///< small, below the player
  std::string colour{};    ///< instead of the team's
};

/// A translucent rectangle below the players; an empty one is not drawn.
struct DrawnArea {
  Vector2d lo;
  Vector2d hi;
  std::string colour;
};

/// From side line to side line.
struct DrawnLine {
  double x = 0;
  std::string colour;
  bool dashed = false;
};

struct FieldDrawing {
  std::vector<DrawnArea> areas;
  std::vector<DrawnLine> lines;
  std::vector<DrawnPlayer> players;  ///< later ones lie above earlier ones
  std::optional<Vector2d> ball;
  std::string caption;  ///< one line below the field
};

/// Writes the picture, 1050 x 680 pixels and scalable. What lies too far outside the field is
/// drawn at the picture's edge.
std::ostream& operator<<(std::ostream& out, const FieldDrawing& drawing);

/// Writes several as one picture, row by row; one alone as above.
void writeSheet(std::ostream& out, const std::vector<FieldDrawing>& drawings);

}  // namespace vok::tools
