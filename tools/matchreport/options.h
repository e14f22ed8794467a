// The command line of matchreport.
#pragma once

#include <optional>
#include <string>
#include <vector>

namespace vok::matchreport {

struct Options {
  static constexpr int MAX_JOBS = 256;

  std::vector<std::string> sources;
  std::string json;
  std::string csv;
  std::string html;
  std::string team;
  std::string rcl;
  bool compare = false;
  int jobs = 1;
};

/// Reads the command line. A value is the exit status with which the tool has to end.
std::optional<int> readOptions(Options& options, int argc, char** argv);

}  // namespace vok::matchreport
