// The command line of formationview.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "coordinates.h"

namespace vok {

/// What is not given is the configuration's or follows from the ball.
struct Options {
  bool help = false;
  std::string configFile = "agent.conf";
  std::string outFile;  ///< empty: standard output
  std::optional<int> formDef;
  std::optional<int> formOff;
  std::optional<double> offside;
  std::vector<Vector2d> balls;  ///< at least one once read, all on the field
};

/// The reason when the command line is wrong.
std::optional<std::string> parse(const std::vector<std::string>& arguments, Options& options);

}  // namespace vok
