// Random numbers that are the same on every machine, unlike those of the standard distributions.
#pragma once

#include <cstdint>
#include <random>

namespace vok::practicematch {

class Dice {
 public:
  explicit Dice(std::uint64_t seed) : engine_(seed) {}

  double between(double low, double high) {
    return low + (high - low) * static_cast<double>(engine_() >> 11) * 0x1p-53;
  }
  bool chance(double probability) { return between(0, 1) < probability; }
  /// A whole number of [low, high].
  int whole(int low, int high) { return low + static_cast<int>(between(0, high - low + 1)); }

 private:
  std::mt19937_64 engine_;
};

}  // namespace vok::practicematch
