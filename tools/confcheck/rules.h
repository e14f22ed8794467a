// What the numbers of the configuration mean, and which make no sense.
#pragma once

#include <string>

#include "keys.h"

namespace vok::confcheck {

/// Ends the sentence "KEY is NUMBER". Empty when the number makes sense.
std::string problemOf(const Key& key, double number, const Keys& keys);

}  // namespace vok::confcheck
