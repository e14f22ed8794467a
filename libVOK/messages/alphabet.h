// The characters of say messages and their values.
#pragma once

#include <array>
#include <cstddef>
#include <string_view>

namespace vok {

/// The characters by value. The codec writes the first `CODE_CHARS` only, six bits each; the ten
/// characters of a player's message are digits of the whole alphabet.
inline constexpr std::string_view msgEncodeChars =
    "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789+-.*/?<>_() ";
inline constexpr std::size_t CODE_CHARS = 64;

namespace alphabet {

using DecodeTable = std::array<signed char, 256>;

constexpr DecodeTable decodeTable() {
  DecodeTable table{};
  for (std::size_t i = 0; i < msgEncodeChars.size(); ++i)
    table[static_cast<unsigned char>(msgEncodeChars[i])] = static_cast<signed char>(i);
  return table;
}

inline constexpr DecodeTable msgDecodeChars = decodeTable();

}  // namespace alphabet

/// The value of a character; 0 for one outside the alphabet.
constexpr int decodeChar(char c) {
  return alphabet::msgDecodeChars[static_cast<unsigned char>(c)];
}

}  // namespace vok
