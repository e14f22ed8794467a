// Several small numbers in three characters of a player's message. Internal to the library and the
// modules beside it.
#pragma once

#include <cstddef>

#include "alphabet.h"

namespace vok {

/// The numbers are the digits of one mixed-radix number, which travels in base 74, the lowest digit
/// first. They are put in and taken out in the same order; the product of the ranges may be up to
/// `CAPACITY`.
class MixedNumber {
 public:
  static constexpr int DIGITS = static_cast<int>(msgEncodeChars.size());
  static constexpr int CAPACITY = DIGITS * DIGITS * DIGITS;

  MixedNumber() = default;
  explicit MixedNumber(const char* at)
      : value_(decodeChar(at[0]) + DIGITS * (decodeChar(at[1]) + DIGITS * decodeChar(at[2]))) {}

  void put(int number, int range) {
    value_ += number * weight_;
    weight_ *= range;
  }
  int take(int range) {
    const int number = value_ % range;
    value_ /= range;
    return number;
  }
  /// The number put in last, for which there is no range but what the characters hold.
  int rest() const { return value_; }

  void write(char* at) const {
    at[0] = msgEncodeChars[static_cast<std::size_t>(value_ % DIGITS)];
    at[1] = msgEncodeChars[static_cast<std::size_t>(value_ / DIGITS % DIGITS)];
    at[2] = msgEncodeChars[static_cast<std::size_t>(value_ / DIGITS / DIGITS)];
  }

 private:
  int value_ = 0;
  int weight_ = 1;
};

}  // namespace vok
