#include "scanner.h"

#include <algorithm>

namespace vok {

// By where its first digit stands, and the exponent. The number is decimal and well-formed.
bool Scanner::isBelowOne(std::string_view number) {
  const std::size_t mark = std::min(number.find_first_of("eE"), number.size());
  const std::string_view digits = number.substr(0, mark);
  const auto point = static_cast<long>(std::min(digits.find('.'), mark));
  const auto first = static_cast<long>(std::min(digits.find_first_of("123456789"), mark));
  if (mark == number.size()) return first > point;

  std::string_view power = number.substr(mark + 1);
  if (power.starts_with('+')) power.remove_prefix(1);
  long exponent = 0;
  const auto [end, error] = std::from_chars(power.data(), power.data() + power.size(), exponent);
  if (error != std::errc()) return power.starts_with('-');
  return exponent < first - point;
}

}  // namespace vok
