// Which key may have been meant.
#pragma once

#include <functional>
#include <string_view>

#include "keys.h"

namespace vok::confcheck {

/// The key with the fewest edits to a name, whose letters' case does not matter, null when none is
/// near. Of equally near ones a preferred key.
const Key* nearest(std::string_view name, const Keys& keys,
                   const std::function<bool(const Key&)>& isPreferred);

}  // namespace vok::confcheck
