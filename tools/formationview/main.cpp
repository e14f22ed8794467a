// Draws where the formations of a configuration place the players.
#include <array>
#include <fstream>
#include <iomanip>
#include <iostream>
#include <sstream>
#include <string>
#include <vector>

#include "Config.h"
#include "commandline.h"
#include "fielddrawing.h"
#include "options.h"
#include "settled.h"

using namespace vok;
using namespace vok::formationview;
using tools::DrawnPlayer;
using tools::FieldDrawing;

namespace {

constexpr int NOTHING_DRAWN = 1;

int fail(const std::string& reason, int status = tools::BAD_ARGUMENT) {
  return tools::fail("formationview", reason, status);
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
    tools::writeSheet(std::cout, drawings);
    return std::cout.flush() ? 0 : fail("cannot write to standard output");
  }
  std::ofstream file(fileName);
  writeSheet(file, drawings);
  return file.flush() ? 0 : fail("cannot write '" + fileName + "'");
}

}  // namespace

int main(int argc, char** argv) {
  Options options;
  if (const auto status = readCommandLine(commandLine(options), argc, argv)) return *status;
  if (options.configFile.empty()) options.configFile = "agent.conf";
  if (options.balls.empty()) options.balls.emplace_back();
  if (!Config::readFile(options.configFile.c_str())) {
    return fail("cannot read the configuration '" + options.configFile + "'");
  }
  if (options.formDef) setEntry("StartFormationDef", std::to_string(*options.formDef).c_str());
  if (options.formOff) setEntry("StartFormationOff", std::to_string(*options.formOff).c_str());

  Pitch pitch;
  std::vector<FieldDrawing> drawings;
  for (const Vector2d ball : options.balls) {
    const auto team = pitch.settle(ball, options.offside);
    if (!team) return fail("the formation's values are too large to draw", NOTHING_DRAWN);
    drawings.push_back(draw(*team, ball));
  }
  return write(drawings, options.outFile);
}
