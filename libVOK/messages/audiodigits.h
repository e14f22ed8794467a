// How the codec lays numbers into characters, six bits each. Internal to this folder.
#pragma once

#include <algorithm>
#include <cstddef>
#include <span>

#include "alphabet.h"

namespace vok {

constexpr unsigned digitsOf(unsigned number, unsigned place) {
  return (number >> (6 * place)) & 63;
}

/// The character of the lowest six bits.
constexpr char digit(unsigned number) {
  return msgEncodeChars[number & 63];
}

inline unsigned decoded(char c) {
  return static_cast<unsigned>(decodeChar(c));
}

/// Copies up to the terminator or the end of `into`, and fills the rest of it with NUL.
inline void copyText(std::span<char> into, const char* text) {
  std::size_t n = 0;
  for (; n < into.size() && text[n] != '\0'; ++n) into[n] = text[n];
  std::ranges::fill(into.subspan(n), '\0');
}

}  // namespace vok
