// The one text scanner: datagrams and numbers of the configuration.
//
// A Scanner is a position in a text that it does not own. Each step reads what the corresponding
// piece of a scanf format reads and moves on; a step that does not match returns false and leaves
// the position where it was, before any white space. A format is thus a chain of steps with &&, run
// on a copy of the scanner where it may fail half way.
//
// Unlike scanf it refuses numbers that are not finite or too large for their type, and it does not
// know hexadecimal reals. A number too small for a double is 0: the velocity of a player who has
// stood for 800 cycles is one.
#pragma once

#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>
#include <cstdint>
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

/// A text without the white space around it.
inline std::string_view trimmed(std::string_view text) {
  while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
  return text;
}

/// A text up to its first line end, for diagnostics: a text from outside must not add lines to
/// them.
inline std::string_view firstLine(std::string_view text) {
  return text.substr(0, text.find_first_of("\r\n"));
}

class Scanner {
 public:
  static constexpr std::size_t NO_LIMIT = std::numeric_limits<std::size_t>::max();

  Scanner() = default;
  explicit Scanner(std::string_view text) : left_(text) {}

  /// The text from the position on.
  std::string_view rest() const { return left_; }
  bool startsWith(std::string_view head) const { return left_.starts_with(head); }
  void advance(std::size_t n) { left_.remove_prefix(n < left_.size() ? n : left_.size()); }

  /// Any run of white space, also none.
  Scanner& skipBlanks() {
    while (!left_.empty() && isBlank(left_.front())) left_.remove_prefix(1);
    return *this;
  }

  /// Exactly these characters.
  bool literal(std::string_view word) {
    if (!left_.starts_with(word)) return false;
    left_.remove_prefix(word.size());
    return true;
  }

  bool literal(char c) {
    if (left_.empty() || left_.front() != c) return false;
    left_.remove_prefix(1);
    return true;
  }

  /// These characters, where a blank stands for any run of white space, also none.
  bool pattern(std::string_view words) {
    Scanner ahead = *this;
    for (const char c : words) {
      if (c == ' ')
        ahead.skipBlanks();
      else if (!ahead.literal(c))
        return false;
    }
    *this = ahead;
    return true;
  }

  /// Exactly the next character, white space included.
  bool character(char& c) {
    if (left_.empty()) return false;
    c = left_.front();
    left_.remove_prefix(1);
    return true;
  }

  /// The longest run of characters of a class, at least one and at most `limit`.
  template <typename Class>
  bool run(Class inClass, std::string_view& found, std::size_t limit = NO_LIMIT) {
    std::size_t n = 0;
    while (n < left_.size() && n < limit && inClass(left_[n])) ++n;
    if (n == 0) return false;
    found = left_.substr(0, n);
    left_.remove_prefix(n);
    return true;
  }

  /// The longest run without `stop`, at least one character.
  bool until(char stop, std::string_view& found) {
    const std::size_t n = left_.substr(0, left_.find(stop)).size();
    if (n == 0) return false;
    found = left_.substr(0, n);
    left_.remove_prefix(n);
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

  bool integer(int& value) { return number(value) == std::errc(); }
  bool integer(short& value) { return number(value) == std::errc(); }

  /// Hexadecimal digits without a head, small or capital.
  bool hexadecimal(std::uint32_t& value) {
    constexpr int BASE = 16;
    const char* const end = left_.data() + left_.size();
    const auto [behind, error] = std::from_chars(left_.data(), end, value, BASE);
    if (error != std::errc()) return false;
    left_.remove_prefix(static_cast<std::size_t>(behind - left_.data()));
    return true;
  }

  /// A finite real in decimal notation.
  bool real(double& value) {
    if (plainReal(value)) return true;
    double read = 0;
    Scanner ahead = *this;
    if (ahead.number(read) != std::errc() || !std::isfinite(read)) return false;
    ahead.dropBareExponent(left_.substr(0, left_.size() - ahead.left_.size()));
    value = read;
    *this = ahead;
    return true;
  }

  /// True where `real` refuses a number because it is too large or not finite.
  bool atUnfitReal() const {
    double read = 0;
    const std::errc error = Scanner(left_).number(read);
    return error == std::errc::result_out_of_range || !std::isfinite(read);
  }

 private:
  /// The numbers that servers send: digits, perhaps with a sign before and a point between them,
  /// no exponent. Fifteen digits and their power of ten are doubles without error, so that the one
  /// division gives the nearest double. Any other number is left to the general way.
  bool plainReal(double& value) {
    constexpr std::ptrdiff_t EXACT_DIGITS = 15;
    static constexpr std::array POWERS = {1e0, 1e1, 1e2,  1e3,  1e4,  1e5,  1e6, 1e7,
                                          1e8, 1e9, 1e10, 1e11, 1e12, 1e13, 1e14};
    const char* p = left_.data();
    const char* const end = p + left_.size();
    while (p != end && isBlank(*p)) ++p;
    const bool negative = p != end && *p == '-';
    if (negative) ++p;

    std::uint64_t digits = 0;
    const auto readDigits = [&] {
      const char* const first = p;
      for (; p != end; ++p) {
        const auto digit = static_cast<unsigned>(*p - '0');
        if (digit > 9) break;
        digits = digits * 10 + digit;
      }
      return p - first;
    };
    const std::ptrdiff_t whole = readDigits();
    if (whole == 0) return false;
    std::ptrdiff_t decimals = 0;
    if (p != end && *p == '.') {
      ++p;
      decimals = readDigits();
      if (decimals == 0) return false;
    }
    if (whole + decimals > EXACT_DIGITS || (p != end && (*p == 'e' || *p == 'E'))) return false;

    const double size = static_cast<double>(digits) / POWERS[static_cast<std::size_t>(decimals)];
    value = negative ? -size : size;
    left_.remove_prefix(static_cast<std::size_t>(p - left_.data()));
    return true;
  }

  template <typename Number>
  std::errc number(Number& value) {
    const char* p = left_.data();
    const char* end = p + left_.size();
    while (p != end && isBlank(*p)) ++p;
    if (p != end && *p == '+') {
      ++p;
      if (p != end && *p == '-') return std::errc::invalid_argument;
    }
    const auto [behind, error] = std::from_chars(p, end, value);
    if (error == std::errc::result_out_of_range &&
        isBelowOne({p, static_cast<std::size_t>(behind - p)})) {
      value = 0;
    } else if (error != std::errc()) {
      return error;
    }
    left_.remove_prefix(static_cast<std::size_t>(behind - left_.data()));
    return std::errc();
  }

  /// Of a number out of range: it is too small, not too large.
  static bool isBelowOne(std::string_view number);

  /// "1e" and "1e+" are the number 1, and the exponent's mark goes with it.
  void dropBareExponent(std::string_view number) {
    if (left_.empty() || (left_.front() != 'e' && left_.front() != 'E')) return;
    if (number.find_first_of("eE") != NO_LIMIT) return;
    left_.remove_prefix(1);
    if (!left_.empty() && (left_.front() == '-' || left_.front() == '+')) left_.remove_prefix(1);
  }

  std::string_view left_;
};

}  // namespace vok
