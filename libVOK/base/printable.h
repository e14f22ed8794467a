// Escapes untrusted text for a line of output.
#pragma once

#include <ostream>
#include <string_view>

namespace vok {

struct Printable {
  std::string_view text;
};

/// Marks a text for output as one line that no terminal takes for commands: every character that is
/// not printable ASCII is written as \xNN. Nothing is copied, so the text must live until it is
/// written: `std::cerr << printable(name)`.
inline Printable printable(std::string_view text) {
  return {text};
}

inline std::ostream& operator<<(std::ostream& out, Printable shown) {
  constexpr std::string_view DIGITS = "0123456789abcdef";
  for (const char c : shown.text) {
    if (c >= ' ' && c <= '~') {
      out.put(c);
    } else {
      const auto byte = static_cast<unsigned char>(c);
      out << "\\x" << DIGITS[byte / 16] << DIGITS[byte % 16];
    }
  }
  return out;
}

}  // namespace vok
