// Soft assertion: a condition that does not hold is reported, and execution goes on.
#pragma once

#include <iostream>

namespace vok {

/// Writes the one line of a failed soft assertion to standard error.
/// `source` is the reporting unit's name without path and extension.
inline void ensureFailed(const char* condition, const char* source, int line) {
  std::cerr << "Warning: ensure " << condition << " not valid in " << source << ":" << line << "\n";
}

}  // namespace vok

#define ensure(condition, source) \
  ((condition) ? void(0) : ::vok::ensureFailed(#condition, source, __LINE__))
