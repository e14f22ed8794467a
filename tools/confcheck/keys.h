// What the coach asks its configuration for.
#pragma once

#include <string>
#include <vector>

#include "Config.h"

namespace vok::confcheck {

struct Key {
  std::string name;
  ConfigRequest::Kind kind;
  int values;  ///< how many values of a list are read; 0 when the value is no list
  bool optional;
  bool wish;  ///< asked for only when player types are to be given
};

using Keys = std::vector<Key>;

/// All keys, in the order in which the coach asks for them. Builds a coach whose check-in fails
/// without a server and records what its parts ask for. Leaves the configuration empty.
Keys keysOfCoach();

}  // namespace vok::confcheck
