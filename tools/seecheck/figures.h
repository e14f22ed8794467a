// The errors of one kind, and how they are summed up.
#pragma once

#include <algorithm>
#include <cmath>
#include <optional>
#include <string>
#include <vector>

namespace vok::seecheck {

/// Errors of the world and, for the same samples, of who it is compared with.
struct Errors {
  std::vector<double> world;
  std::vector<double> other;  ///< may be fewer: it does not always know

  void add(double ofWorld) { world.push_back(ofWorld); }
  void add(double ofWorld, double ofOther) {
    world.push_back(ofWorld);
    other.push_back(ofOther);
  }
};

/// The value below which that share of the errors lies; 0 when there are none.
inline double share(std::vector<double> errors, double part) {
  if (errors.empty()) return 0;
  const auto last = static_cast<double>(errors.size() - 1);
  const auto nth = errors.begin() + std::lround(part * last);
  std::nth_element(errors.begin(), nth, errors.end());
  return *nth;
}

}  // namespace vok::seecheck
