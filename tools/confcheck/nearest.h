// Which key may have been meant.
#pragma once

#include <functional>
#include <string_view>

#include "keys.h"

namespace vok::confcheck {

/// The key that the fewest edits make of a name, regardless of the letters' case. Of equally near
/// keys a preferred one is taken. Null when no key is near.
const Key* nearest(std::string_view name, const Keys& keys,
                   const std::function<bool(const Key&)>& isPreferred);

}  // namespace vok::confcheck
