// The command line of formationview.
#pragma once

#include <optional>
#include <string>
#include <vector>

#include "commandline.h"
#include "coordinates.h"

namespace vok::formationview {

/// An empty option stands for the configuration's value, or for one that follows from the ball.
struct Options {
  std::string configFile;  ///< empty: agent.conf
  std::string outFile;     ///< empty: standard output
  std::optional<int> formDef;
  std::optional<int> formOff;
  std::optional<double> offside;  ///< x, metres
  std::vector<Vector2d> balls;    ///< all on the field; empty when none was given
};

/// The table that reads a command line into `options`, which must live at least as long.
tools::Tool commandLine(Options& options);

}  // namespace vok::formationview
