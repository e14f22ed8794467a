// Draws where the formations of a configuration place the players.
#include <array>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <sstream>
#include <string>
#include <string_view>
#include <vector>

#include "Config.h"
#include "fielddrawing.h"
#include "options.h"
#include "settled.h"

using namespace vok;

namespace {

constexpr std::string_view HELP =
    R"(Usage: formationview [OPTION...] [CONFIGURATION]

Draws the places and areas of responsibility that a configuration's formations
give the ten field players in play once the ball has rested for long. Writes one
SVG with one picture for every ball position.

  -f FILE           the configuration (default agent.conf)
  --out FILE        write there instead of to standard output
  --form-def N      defensive half of formation N (0 to 2), not StartFormationDef
  --form-off N      offensive half of formation N (0 to 2), not StartFormationOff
  --ball X,Y        the ball there (default 0,0); may be given several times
  --ball X,Y:X,Y:N  the ball at N places from the one to the other
  --offside X       our offside line, 0 to 52.5 (default 15 m in front of the
                    ball, at least 0 and at most 36); a ball in front of it moves it
  --help            show this

Metres; our goal is on the left at x = -52.5, y grows downwards. The numbers are
tactical numbers; blue is defence, amber midfield, red attack, by the head counts
of the configuration. Thin lines bound the band that the team occupies, the
dashed line is our offside line.

Ends with status 1 after one line when something given is wrong, and, as the coach
does, with status 10 when a key of the configuration is missing or malformed.
)";

int fail(const std::string& reason) {
  std::cerr << "formationview: " << reason << "\n";
  return 1;
}

struct RoleColours {
  const char* player;
  const char* area;  ///< lighter: it lies translucent on the grass
};

/// By `Role`.
constexpr std::array<RoleColours, 3> COLOURS = {
    {{"#2456c8", "#7aa2ff"}, {"#b87400", "#ffc24a"}, {"#c4281f", "#ff6a5e"}}};

FieldDrawing draw(const SettledTeam& team, Vector2d ball) {
  FieldDrawing drawing;
  for (const SettledPlace& place : team.places) {
    const RoleColours& colours = COLOURS[static_cast<std::size_t>(place.role)];
    DrawnPlayer player;
    player.pos = place.pos;
    player.number = place.number;
    player.colour = colours.player;
    drawing.players.push_back(player);
    drawing.areas.push_back({place.lo, place.hi, colours.area});
  }
  for (const double x : {team.minX, team.maxX}) drawing.lines.push_back({x, "#7fe0ff", false});
  drawing.lines.push_back({team.offsideLine, "#ffd83a", true});
  drawing.ball = ball;

  std::ostringstream caption;
  caption << "Ball " << ball.x << ", " << ball.y << std::fixed << std::setprecision(1) << ". Band "
          << team.minX << " to " << team.maxX << " (thin), our offside line " << team.offsideLine
          << " (dashed).";
  drawing.caption = caption.str();
  return drawing;
}

int write(const std::vector<FieldDrawing>& drawings, const std::string& fileName) {
  if (fileName.empty()) {
    writeSheet(std::cout, drawings);
    return std::cout.flush() ? 0 : fail("cannot write to standard output");
  }
  std::ofstream file(fileName);
  writeSheet(file, drawings);
  return file.flush() ? 0 : fail("cannot write '" + fileName + "'");
}

}  // namespace

int main(int argc, char** argv) {
  Options options;
  if (const auto reason = parse({argv + 1, argv + argc}, options)) return fail(*reason);
  if (options.help) {
    std::cout << HELP;
    return 0;
  }
  if (!Config::readFile(options.configFile.c_str())) {
    return fail("cannot read the configuration '" + options.configFile + "'");
  }
  if (options.formDef) setEntry("StartFormationDef", std::to_string(*options.formDef).c_str());
  if (options.formOff) setEntry("StartFormationOff", std::to_string(*options.formOff).c_str());

  Pitch pitch;
  std::vector<FieldDrawing> drawings;
  for (const Vector2d ball : options.balls) {
    const auto team = pitch.settle(ball, options.offside);
    if (!team) return fail("the formation's values are too large to draw");
    drawings.push_back(draw(*team, ball));
  }
  return write(drawings, options.outFile);
}
