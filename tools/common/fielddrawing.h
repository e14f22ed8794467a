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

enum class Outline { NONE, SOLID, DASHED };

struct DrawnPlayer {
  Vector2d pos;
  bool ours = true;
  int number = 0;
  bool goalie = false;              ///< drawn square
  Outline outline = Outline::NONE;  ///< a ring around the player
  std::string note;                 ///< small text below the player
  std::string colour{};             ///< empty: the team's colour
};

/// A translucent rectangle beneath the players, from the corner `lo` to the corner `hi`. It is not
/// drawn when it is empty.
struct DrawnArea {
  Vector2d lo;
  Vector2d hi;
  std::string colour;
};

/// A line across the whole pitch at `x`.
struct DrawnLine {
  double x = 0;
  std::string colour;
  bool dashed = false;
};

struct FieldDrawing {
  std::vector<DrawnArea> areas;
  std::vector<DrawnLine> lines;
  std::vector<DrawnPlayer> players;  ///< in the order in which they are drawn
  std::optional<Vector2d> ball;
  std::string caption;  ///< one line below the field
};

/// Writes the picture; it is 1050 x 680 pixels and can be scaled. Whatever lies too far outside the
/// field is drawn at the picture's edge.
std::ostream& operator<<(std::ostream& out, const FieldDrawing& drawing);

/// Writes several drawings as one picture, row by row. A single one is written as above.
void writeSheet(std::ostream& out, const std::vector<FieldDrawing>& drawings);

}  // namespace vok::tools
