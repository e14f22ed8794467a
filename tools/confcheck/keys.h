// What the coach asks its configuration for.
#pragma once

#include <string>
#include <vector>

#include "Config.h"

namespace vok::confcheck {

struct Key {
  std::string name;
  ConfigRequest::Kind kind;
  int values;  ///< that are read of a list, 0 for a plain value
  bool optional;
  bool wish;  ///< asked for only when player types are to be given
};

using Keys = std::vector<Key>;

/// All keys, as they are first asked for. Builds a coach that no server hears of and notes what its
/// parts ask for. Leaves the configuration empty.
Keys keysOfCoach();

}  // namespace vok::confcheck
