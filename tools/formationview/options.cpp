#include "options.h"

#include <algorithm>
#include <cmath>

#include "pitch.h"
#include "scanner.h"

namespace vok::formationview {
namespace {

constexpr int LAST_FORMATION = 2;
constexpr int MAX_PICTURES = 100;

bool readPoint(Scanner& text, Vector2d& point) {
  return text.real(point.x) && text.literal(',') && text.real(point.y) &&
         std::abs(point.x) <= HALF_LENGTH && std::abs(point.y) <= HALF_WIDTH;
}

/// Reads a point, or two points and the number of positions on the way between them.
bool readSweep(Scanner text, Vector2d& from, Vector2d& to, int& count) {
  if (!readPoint(text, from)) return false;
  to = from;
  count = 1;
  if (text.rest().empty()) return true;
  return text.literal(':') && readPoint(text, to) && text.literal(':') && text.integer(count) &&
         count >= 2 && text.rest().empty();
}

bool takeBall(std::vector<Vector2d>& balls, const std::string& value) {
  Vector2d from;
  Vector2d to;
  int count = 0;
  if (!readSweep(Scanner(value), from, to, count)) return false;
  if (count > MAX_PICTURES - static_cast<int>(balls.size())) return false;
  for (int i = 0; i < count; ++i) {
    const double share = static_cast<double>(i) / std::max(count - 1, 1);
    balls.push_back(from + share * (to - from));
  }
  return true;
}

/// Refuses a second file.
bool takeConfiguration(std::string& file, const std::string& value) {
  if (!file.empty() || value.empty()) return false;
  file = value;
  return true;
}

}  // namespace

tools::Tool commandLine(Options& options) {
  using tools::number;
  const auto configuration = [&options](const std::string& value) {
    return takeConfiguration(options.configFile, value);
  };
  return {
      "formationview",
      "[OPTION...] [CONFIGURATION]",
      "Draws the places and areas of responsibility that a configuration's formations\n"
      "give the ten field players in play once the ball has rested for long. Writes one\n"
      "SVG with one picture for every ball position.\n",
      {{"CONFIGURATION", "", "one file (default agent.conf)", configuration},
       {"-f", "FILE", "the same one file, as an option", configuration},
       {"--out", "FILE", "write there instead of to standard output", tools::text(options.outFile)},
       {"--form-def", "N", "defensive half of formation N (0 to 2), not StartFormationDef",
        number(options.formDef, 0, LAST_FORMATION)},
       {"--form-off", "N", "offensive half of formation N (0 to 2), not StartFormationOff",
        number(options.formOff, 0, LAST_FORMATION)},
       {"--ball", "X,Y[:X,Y:N]",
        "the ball at this place on the field (default 0,0), or at N places, 2 or more, from the "
        "one to the other; may be given several times, for at most 100 places",
        [&options](const std::string& value) { return takeBall(options.balls, value); }},
       {"--offside", "X",
        "our offside line, from 0 to their goal line (default 15 m in front of the ball, but at "
        "least 0 and outside their penalty area); a ball in front of it moves it",
        number(options.offside, 0.0, HALF_LENGTH)}},
      "Metres, with the centre spot at 0,0: our goal is on the left, y grows downwards.\n"
      "The numbers are tactical numbers; blue is defence, amber midfield, red attack, by\n"
      "the head counts of the configuration. Thin lines bound the band that the team\n"
      "occupies, the dashed line is our offside line.\n\n"
      "Exit status: 0; 1 when the formation's values are too large to draw; 2 for a wrong\n"
      "argument or a file that cannot be read or written; as with the coach, 10 when a key\n"
      "of the configuration is missing or malformed.\n"};
}

}  // namespace vok::formationview
