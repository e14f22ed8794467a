// What the numbers of the configuration mean, and which make no sense.
#pragma once

#include <string>

#include "keys.h"

namespace vok::confcheck {

/// The end of the sentence that the key is such a number, empty when it makes sense.
std::string problemOf(const Key& key, double number, const Keys& keys);

}  // namespace vok::confcheck
