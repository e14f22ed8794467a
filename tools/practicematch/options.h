// The command line of practicematch.
#pragma once

#include <optional>
#include <string>

#include "match.h"

namespace vok::practicematch {

struct Options {
  MatchSettings match;
  int stepMs = 0;                 ///< real time; 0: as fast as the coach answers
  std::optional<int> playerPort;  ///< none: players are not let in
  std::string replay;             ///< a recording instead of a simulated match
  double speed = 0;               ///< of the recording; 0: in step with the coach where it was so
  bool synch = false;             ///< asked for on the command line
  std::string team;               ///< the only one that is let in; empty: any
  std::string log;                ///< the file that keeps the coach's commands; empty: none does
  std::string gameLog;            ///< the file that keeps the match; empty: none does
  int waitSeconds = 60;
  bool lenient = false;
  bool quiet = false;
};

/// Reads a command line. A value is the exit status of a program that ends here.
std::optional<int> readOptions(int argc, char** argv, Options& options);

}  // namespace vok::practicematch
