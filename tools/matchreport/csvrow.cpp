#include "csvrow.h"

#include <array>
#include <charconv>
#include <cmath>
#include <cstddef>

namespace vok::matchreport {
namespace {

/// A number of at most four decimals, as logs have them, some five times as fast as the general
/// way; null when it is another number. `value` is below a million.
char* writeDecimals(char* to, double value) {
  constexpr double SCALE = 1e4;
  constexpr int DECIMALS = 4;
  constexpr std::ptrdiff_t WHOLE_DIGITS = 8;
  constexpr int BASE = 10;
  const auto scaled = static_cast<long>(std::lrint(std::abs(value) * SCALE));
  if (static_cast<double>(scaled) / SCALE != std::abs(value)) return nullptr;
  const long whole = scaled / static_cast<long>(SCALE);
  long rest = scaled % static_cast<long>(SCALE);
  if (value < 0) *to++ = '-';
  to = std::to_chars(to, to + WHOLE_DIGITS, whole).ptr;
  if (rest == 0) return to;
  *to++ = '.';
  for (int i = DECIMALS - 1; i >= 0; --i, rest /= BASE)
    to[i] = static_cast<char>('0' + rest % BASE);
  to += DECIMALS;
  while (to[-1] == '0') --to;
  return to;
}

}  // namespace

CsvRow& CsvRow::text(std::string_view value) {
  constexpr std::string_view DIGITS = "0123456789abcdef";
  comma();
  const bool quoted = value.find_first_of(",\"") != std::string_view::npos;
  if (quoted) text_ += '"';
  for (const char c : value) {
    if (c >= ' ' && c <= '~') {
      text_.append(c == '"' ? 2 : 1, c);
    } else {
      const auto byte = static_cast<unsigned char>(c);
      text_.append("\\x").append(1, DIGITS[byte / 16]).append(1, DIGITS[byte % 16]);
    }
  }
  if (quoted) text_ += '"';
  return *this;
}

CsvRow& CsvRow::number(int value) {
  std::array<char, 16> digits{};
  comma();
  text_.append(digits.data(), std::to_chars(digits.data(), digits.end(), value).ptr);
  return *this;
}

CsvRow& CsvRow::real(double value) {
  constexpr double MILLION = 1e6;
  std::array<char, 32> digits{};
  comma();
  if (!std::isfinite(value)) return *this;
  char* end = std::abs(value) < MILLION ? writeDecimals(digits.data(), value) : nullptr;
  if (end == nullptr) end = std::to_chars(digits.data(), digits.end(), value).ptr;
  text_.append(digits.data(), end);
  return *this;
}

}  // namespace vok::matchreport
