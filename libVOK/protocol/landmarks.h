// The landmarks: goals, flags and lines, how the server names them and where they stand.
//
// Places are metres in the server's frame: x towards the right goal, y towards the bottom line.
#pragma once

#include <span>
#include <string_view>

#include "protocol.h"

namespace vok {

template <typename Kind>
struct Landmark {
  std::string_view name;
  Kind which;
  double x;
  double y;
};

/// One row for each goal; the place is that of its centre.
std::span<const Landmark<goal_type>> goalLandmarks();

/// One row for each flag. The flags of the goal posts stand at the goal's default width.
std::span<const Landmark<flag_type>> flagLandmarks();

// The landmark whose name an object's name begins with; the unknown value when there is none.
goal_type goalByName(std::string_view name);
flag_type flagByName(std::string_view name);
line_type lineByName(std::string_view name);

}  // namespace vok
