#include "fielddrawing.h"

#include <algorithm>
#include <cmath>
#include <ostream>
#include <string>
#include <string_view>

#include "pitch.h"

namespace vok::tools {
namespace {

// The frame around the pitch, in metres. It has the pitch's proportions and leaves space for the
// goals, for the benches beyond the upper side line and for the caption.
constexpr double FRAME_X = 59.0;
constexpr double FRAME_Y = FRAME_X * HALF_WIDTH / HALF_LENGTH;
constexpr double GRASS_Y = 39;  // the grass reaches a little beyond the frame
constexpr double PLAYER_RADIUS = 1.35;

// The size in pixels of a single picture, and of each picture on a sheet.
constexpr int WIDTH = 1050;
constexpr int HEIGHT = 680;
constexpr int SHEET_WIDTH = 630;
constexpr int SHEET_HEIGHT = 408;

// Measures that only the picture needs, in metres.
constexpr double PENALTY_SPOT_X = HALF_LENGTH - 11;
constexpr double GOAL_DEPTH = 2.44;
constexpr double CORNER_RADIUS = 1;
constexpr double SPOT_RADIUS = 0.35;

/// Draws a rectangle that is symmetrical to the x axis and begins at `x`. `look` holds further
/// attributes.
void drawBox(std::ostream& out, double x, double length, double halfWidth, const char* look = "") {
  out << "<rect x='" << x << "' y='" << -halfWidth << "' width='" << length << "' height='"
      << 2 * halfWidth << "'" << look << "/>\n";
}

/// Draws the same box at both ends of the pitch. The right one reaches from `x` to `x` + `length`.
void drawBoxes(std::ostream& out, double x, double length, double halfWidth,
               const char* look = "") {
  drawBox(out, -x - length, length, halfWidth, look);
  drawBox(out, x, length, halfWidth, look);
}

/// Draws an arc, and its mirror image in the other half.
void drawArcs(std::ostream& out, Vector2d from, Vector2d to, double radius, bool clockwise) {
  const auto drawOne = [&](double side, bool sweep) {
    out << "M" << side * from.x << "," << from.y << " A" << radius << "," << radius << " 0 0 "
        << sweep << " " << side * to.x << "," << to.y;
  };
  out << "<path d='";
  drawOne(1, clockwise);
  out << " ";
  drawOne(-1, !clockwise);
  out << "'/>\n";
}

/// The front of the penalty area cuts a chord from the circle around the penalty spot. This is half
/// its length, rounded to a centimetre.
double penaltyArcHalfWidth() {
  constexpr double DEPTH = PENALTY_SPOT_X - PENALTY_AREA_X;
  const double chord = std::sqrt(FREE_KICK_DISTANCE * FREE_KICK_DISTANCE - DEPTH * DEPTH);
  return std::round(100 * chord) / 100;
}

void drawPitch(std::ostream& out) {
  drawBox(out, -FRAME_X, 2 * FRAME_X, GRASS_Y, " fill='#2e6b34'");
  out << "<g fill='none' stroke='#e8f0e8' stroke-width='0.2'>\n";
  drawBox(out, -HALF_LENGTH, 2 * HALF_LENGTH, HALF_WIDTH, " fill='#37803f'");
  out << "<line x1='0' y1='" << -HALF_WIDTH << "' x2='0' y2='" << HALF_WIDTH << "'/>\n"
      << "<circle r='" << FREE_KICK_DISTANCE << "'/>\n";
  drawBoxes(out, PENALTY_AREA_X, PENALTY_AREA_LENGTH, PENALTY_AREA_HALF_WIDTH);
  drawBoxes(out, HALF_LENGTH - GOAL_AREA_LENGTH, GOAL_AREA_LENGTH, GOAL_AREA_HALF_WIDTH);
  const double chord = penaltyArcHalfWidth();
  drawArcs(out, {-PENALTY_AREA_X, -chord}, {-PENALTY_AREA_X, chord}, FREE_KICK_DISTANCE, true);
  for (const double side : {-1.0, 1.0}) {
    drawArcs(out, {-HALF_LENGTH, side * (HALF_WIDTH - CORNER_RADIUS)},
             {-HALF_LENGTH + CORNER_RADIUS, side * HALF_WIDTH}, CORNER_RADIUS, side > 0);
  }
  drawBoxes(out, HALF_LENGTH, GOAL_DEPTH, GOAL_HALF_WIDTH, " fill='#1d4421'");
  out << "</g>\n<g fill='#e8f0e8'><circle r='" << SPOT_RADIUS << "'/>";
  for (const double x : {-PENALTY_SPOT_X, PENALTY_SPOT_X}) {
    out << "<circle cx='" << x << "' r='" << SPOT_RADIUS << "'/>";
  }
  out << "</g>\n";
}

Vector2d intoFrame(Vector2d pos) {
  constexpr double INSET = PLAYER_RADIUS + 0.2;
  return {std::clamp(pos.x, -FRAME_X + INSET, FRAME_X - INSET),
          std::clamp(pos.y, -FRAME_Y + INSET, FRAME_Y - INSET)};
}

std::string escaped(std::string_view text) {
  std::string result;
  for (const char c : text) {
    if (c == '<')
      result += "&lt;";
    else if (c == '&')
      result += "&amp;";
    else
      result += c;
  }
  return result;
}

void drawPlayer(std::ostream& out, const DrawnPlayer& player) {
  const Vector2d pos = intoFrame(player.pos);
  out << "<g transform='translate(" << pos.x << "," << pos.y << ")'>";
  if (player.outline != Outline::NONE) {
    out << "<circle r='2.05' fill='none' stroke='#ffd83a' stroke-width='0.5'"
        << (player.outline == Outline::DASHED ? " stroke-dasharray='1.1 0.7'/>" : "/>");
  }
  const std::string teamColour = player.ours ? "#1c4fa8" : "#b3261e";
  const std::string& colour = player.colour.empty() ? teamColour : player.colour;
  if (player.goalie) {
    out << "<rect x='-1.3' y='-1.3' width='2.6' height='2.6' fill='" << colour;
  } else {
    out << "<circle r='" << PLAYER_RADIUS << "' fill='" << colour;
  }
  out << "' stroke='#fff' stroke-width='0.2'/>";
  out << "<text y='0.62' font-size='1.8' font-weight='bold'>" << player.number << "</text>";
  if (!player.note.empty()) {
    out << "<text y='" << (player.outline == Outline::NONE ? 2.95 : 3.75)
        << "' font-size='1.45' "
           "stroke='#2e6b34' stroke-width='0.5' paint-order='stroke'>"
        << escaped(player.note) << "</text>";
  }
  out << "</g>\n";
}

void drawArea(std::ostream& out, const DrawnArea& area) {
  const Vector2d lo = intoFrame(area.lo);
  const Vector2d size = intoFrame(area.hi) - lo;
  if (!(size.x > 0 && size.y > 0)) return;
  out << "<rect class='area' x='" << lo.x << "' y='" << lo.y << "' width='" << size.x
      << "' height='" << size.y << "' fill='" << area.colour << "' stroke='" << area.colour
      << "'/>\n";
}

void drawLine(std::ostream& out, const DrawnLine& line) {
  const double x = intoFrame({line.x, 0}).x;
  out << "<line x1='" << x << "' y1='" << -HALF_WIDTH << "' x2='" << x << "' y2='" << HALF_WIDTH
      << "' stroke='" << line.colour
      << (line.dashed ? "' stroke-dasharray='1.2 0.8'/>\n" : "'/>\n");
}

/// Draws the content of one frame, in metres.
void drawField(std::ostream& out, const FieldDrawing& drawing) {
  drawPitch(out);
  if (!drawing.areas.empty()) {
    out << "<g fill-opacity='0.14' stroke-opacity='0.8' stroke-width='0.2'>\n";
    for (const DrawnArea& area : drawing.areas) drawArea(out, area);
    out << "</g>\n";
  }
  if (!drawing.lines.empty()) {
    out << "<g stroke-width='0.25'>\n";
    for (const DrawnLine& line : drawing.lines) drawLine(out, line);
    out << "</g>\n";
  }
  out << "<g font-family='DejaVu Sans, Arial, sans-serif' text-anchor='middle' "
         "fill='#fff'>\n";
  for (const DrawnPlayer& player : drawing.players) drawPlayer(out, player);
  if (drawing.ball) {
    const Vector2d pos = intoFrame(*drawing.ball);
    out << "<circle cx='" << pos.x << "' cy='" << pos.y
        << "' r='0.6' fill='#fff' stroke='#000' stroke-width='0.2'/>\n";
  }
  out << "<text y='37' font-size='2'>" << escaped(drawing.caption) << "</text>\n</g>\n";
}

/// Begins a picture of several fields. The centre of the first one is at the origin.
void beginPicture(std::ostream& out, int columns, int rows, int width, int height) {
  out << "<svg xmlns='http://www.w3.org/2000/svg' width='" << columns * width << "' height='"
      << rows * height << "' viewBox='" << -FRAME_X << " " << -FRAME_Y << " "
      << columns * 2 * FRAME_X << " " << rows * 2 * FRAME_Y << "'>\n";
}

}  // namespace

std::ostream& operator<<(std::ostream& out, const FieldDrawing& drawing) {
  beginPicture(out, 1, 1, WIDTH, HEIGHT);
  drawField(out, drawing);
  return out << "</svg>\n";
}

void writeSheet(std::ostream& out, const std::vector<FieldDrawing>& drawings) {
  if (drawings.size() == 1) {
    out << drawings.front();
    return;
  }
  const int count = static_cast<int>(drawings.size());
  const int columns = count <= 4 ? std::min(count, 2) : 3;
  beginPicture(out, columns, (count + columns - 1) / columns, SHEET_WIDTH, SHEET_HEIGHT);
  for (int i = 0; i < count; ++i) {
    const int row = i / columns;
    const int column = i % columns;
    out << "<g class='picture' transform='translate(" << column * 2 * FRAME_X << ","
        << row * 2 * FRAME_Y << ")'>\n";
    drawField(out, drawings[static_cast<std::size_t>(i)]);
    out << "</g>\n";
  }
  out << "</svg>\n";
}

}  // namespace vok::tools
