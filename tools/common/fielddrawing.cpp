#include "fielddrawing.h"

#include <algorithm>
#include <ostream>
#include <string>
#include <string_view>

namespace vok::tools {
namespace {

// Metres. The frame has the field's proportions and leaves room for the goals, the benches beyond
// the upper side line and the caption.
constexpr double FRAME_X = 59.0;
constexpr double FRAME_Y = FRAME_X * 68 / 105;
constexpr double PLAYER_RADIUS = 1.35;

// Pixels of a picture alone and of one among others.
constexpr int WIDTH = 1050;
constexpr int HEIGHT = 680;
constexpr int SHEET_WIDTH = 630;
constexpr int SHEET_HEIGHT = 408;

// The field's picture never changes. The arcs before the penalty areas are the parts of the
// circles of 9.15 m around the penalty spots (11 m) outside the areas (16.5 m).
constexpr std::string_view FIELD = R"(<rect x='-59' y='-39' width='118' height='78' fill='#2e6b34'/>
<g fill='none' stroke='#e8f0e8' stroke-width='0.2'>
<rect x='-52.5' y='-34' width='105' height='68' fill='#37803f'/>
<line x1='0' y1='-34' x2='0' y2='34'/>
<circle r='9.15'/>
<rect x='-52.5' y='-20.16' width='16.5' height='40.32'/>
<rect x='36' y='-20.16' width='16.5' height='40.32'/>
<rect x='-52.5' y='-9.16' width='5.5' height='18.32'/>
<rect x='47' y='-9.16' width='5.5' height='18.32'/>
<path d='M-36,-7.31 A9.15,9.15 0 0 1 -36,7.31 M36,-7.31 A9.15,9.15 0 0 0 36,7.31'/>
<path d='M-52.5,-33 A1,1 0 0 0 -51.5,-34 M52.5,-33 A1,1 0 0 1 51.5,-34'/>
<path d='M-52.5,33 A1,1 0 0 1 -51.5,34 M52.5,33 A1,1 0 0 0 51.5,34'/>
<rect x='-54.94' y='-7.01' width='2.44' height='14.02' fill='#1d4421'/>
<rect x='52.5' y='-7.01' width='2.44' height='14.02' fill='#1d4421'/>
</g>
<g fill='#e8f0e8'><circle r='0.35'/><circle cx='-41.5' r='0.35'/><circle cx='41.5' r='0.35'/></g>
)";

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
  if (player.ring != Ring::NONE) {
    out << "<circle r='2.05' fill='none' stroke='#ffd83a' stroke-width='0.5'"
        << (player.ring == Ring::DASHED ? " stroke-dasharray='1.1 0.7'/>" : "/>");
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
    out << "<text y='" << (player.ring == Ring::NONE ? 2.95 : 3.75)
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
  out << "<line x1='" << x << "' y1='-34' x2='" << x << "' y2='34' stroke='" << line.colour
      << (line.dashed ? "' stroke-dasharray='1.2 0.8'/>\n" : "'/>\n");
}

/// The frame's content, in metres.
void drawField(std::ostream& out, const FieldDrawing& drawing) {
  out << FIELD;
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

/// Begins a picture of so many fields, the first one's centre at the origin.
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
