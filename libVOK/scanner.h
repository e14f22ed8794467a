// The one text scanner: datagrams and numbers of the configuration.
//
// A Scanner is a position in a text that it does not own. Each step reads what the corresponding
// piece of a scanf format reads and moves on; a step that does not match returns false and leaves
// the position where it was (white space that a number may be preceded by included). So a format
// is a chain of steps with &&, tried on a copy when it may fail half way.
//
// Two kinds of number are none here although scanf takes them: what does not fit the type or is
// not finite, and hexadecimal reals.
#pragma once

#include <charconv>
#include <cmath>
#include <cstddef>
#include <limits>
#include <string_view>
#include <system_error>

namespace vok {

/// White space as the C locale has it.
constexpr bool isBlank(char c) {
  return c == ' ' || (c >= '\t' && c <= '\r');
}
constexpr bool isDigit(char c) {
  return c >= '0' && c <= '9';
}
constexpr bool isLower(char c) {
  return c >= 'a' && c <= 'z';
}
constexpr bool isLetter(char c) {
  return isLower(c) || (c >= 'A' && c <= 'Z');
}

class Scanner {
 public:
  static constexpr std::size_t NO_LIMIT = std::numeric_limits<std::size_t>::max();

  Scanner() = default;
  explicit Scanner(std::string_view text) : left(text) {}

  /// The text from the position on.
  std::string_view rest() const { return left; }
  bool atEnd() const { return left.empty(); }
  bool startsWith(std::string_view head) const { return left.starts_with(head); }
  void advance(std::size_t n) { left.remove_prefix(n < left.size() ? n : left.size()); }

  /// Any run of white space, also none.
  Scanner& skipBlanks() {
    while (!left.empty() && isBlank(left.front())) left.remove_prefix(1);
    return *this;
  }

  /// Exactly these characters.
  bool literal(std::string_view word) {
    if (!left.starts_with(word)) return false;
    left.remove_prefix(word.size());
    return true;
  }

  bool literal(char c) {
    if (left.empty() || left.front() != c) return false;
    left.remove_prefix(1);
    return true;
  }

  /// Exactly the next character, white space included.
  bool character(char& c) {
    if (left.empty()) return false;
    c = left.front();
    left.remove_prefix(1);
    return true;
  }

  /// The longest run of characters of a class, at least one and at most `limit`.
  template <typename Class>
  bool run(Class inClass, std::string_view& found, std::size_t limit = NO_LIMIT) {
    std::size_t n = 0;
    while (n < left.size() && n < limit && inClass(left[n])) ++n;
    if (n == 0) return false;
    found = left.substr(0, n);
    left.remove_prefix(n);
    return true;
  }

  /// The longest run without `stop`, at least one character.
  bool until(char stop, std::string_view& found) {
    const std::size_t n = left.find(stop) == NO_LIMIT ? left.size() : left.find(stop);
    if (n == 0) return false;
    found = left.substr(0, n);
    left.remove_prefix(n);
    return true;
  }

  /// A word without white space, blanks before it skipped.
  bool word(std::string_view& found) {
    Scanner ahead = *this;
    ahead.skipBlanks();
    if (!ahead.run([](char c) { return !isBlank(c); }, found)) return false;
    *this = ahead;
    return true;
  }

  bool integer(int& value) { return number(value); }
  bool integer(long& value) { return number(value); }
  bool integer(short& value) { return number(value); }

  /// A finite real in decimal notation.
  bool real(double& value) {
    double read = 0;
    Scanner ahead = *this;
    if (!ahead.number(read) || !std::isfinite(read)) return false;
    ahead.dropBareExponent(left.substr(0, left.size() - ahead.left.size()));
    value = read;
    *this = ahead;
    return true;
  }

 private:
  template <typename Number>
  bool number(Number& value) {
    const char* p = left.data();
    const char* end = p + left.size();
    while (p != end && isBlank(*p)) ++p;
    if (p != end && *p == '+') {
      ++p;
      if (p != end && *p == '-') return false;
    }
    const auto [behind, error] = std::from_chars(p, end, value);
    if (error != std::errc()) return false;
    left.remove_prefix(static_cast<std::size_t>(behind - left.data()));
    return true;
  }

  /// "1e" and "1e+" are the number 1, and the exponent's mark goes with it.
  void dropBareExponent(std::string_view number) {
    if (left.empty() || (left.front() != 'e' && left.front() != 'E')) return;
    if (number.find_first_of("eE") != NO_LIMIT) return;
    left.remove_prefix(1);
    if (!left.empty() && (left.front() == '-' || left.front() == '+')) left.remove_prefix(1);
  }

  std::string_view left;
};

}  // namespace vok
