// What is wrong with a configuration.
#pragma once

#include <map>
#include <string>
#include <vector>

#include "keys.h"

namespace vok::confcheck {

struct Finding {
  int line;  ///< 0 when there is none
  std::string text;
  bool endsCoach;
};

/// A configuration file as the coach would read it.
struct ConfigFile {
  std::map<std::string, std::vector<int>> lines;  ///< by key: where it is defined, in order
  std::vector<Finding> findings;                  ///< about lines that define nothing

  /// Reads the file, into the configuration as well. Returns false when it cannot be read.
  bool read(const char* fileName);
};

/// How many cycles the team graphic needs; empty when no picture is configured, or a bad one.
std::string noteOnGraphic();

/// All findings about the file that was read last, in the order of its lines. Missing keys come
/// last.
std::vector<Finding> check(const ConfigFile& file, const Keys& keys);

}  // namespace vok::confcheck
