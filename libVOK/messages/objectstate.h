// How far an object's data can be trusted. Messages carry it, so it lies below the world's objects.
#pragma once

namespace vok {

enum WObjectState {
  UNSAFE = 0,  ///< not known or too old
  FUZZY = 1,   ///< from prediction or a team-mate's message
  VISUAL = 2   ///< seen this cycle
};

}  // namespace vok
