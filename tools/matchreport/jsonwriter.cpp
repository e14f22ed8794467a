#include "jsonwriter.h"

#include <array>
#include <charconv>
#include <cmath>

namespace vok::matchreport {

void JsonWriter::comma() {
  if (!first_) text_ += ',';
  first_ = false;
}

JsonWriter& JsonWriter::begin(char bracket) {
  comma();
  text_ += bracket;
  first_ = true;
  return *this;
}

JsonWriter& JsonWriter::end(char bracket) {
  text_ += bracket;
  first_ = false;
  return *this;
}

JsonWriter& JsonWriter::key(std::string_view name) {
  value(name);
  text_ += ':';
  first_ = true;
  return *this;
}

/// A name from a log may hold any bytes. Those that are not ASCII are written as the characters of
/// ISO 8859-1, so that the output is always valid.
JsonWriter& JsonWriter::value(std::string_view text) {
  constexpr std::string_view DIGITS = "0123456789abcdef";
  comma();
  text_ += '"';
  for (const char c : text) {
    const auto byte = static_cast<unsigned char>(c);
    if (c == '"' || c == '\\') text_ += '\\';
    if (c >= ' ' && c <= '~') {
      text_ += c;
    } else {
      text_.append("\\u00").append(1, DIGITS[byte / 16]).append(1, DIGITS[byte % 16]);
    }
  }
  text_ += '"';
  return *this;
}

JsonWriter& JsonWriter::value(bool truth) {
  comma();
  text_ += truth ? "true" : "false";
  return *this;
}

JsonWriter& JsonWriter::value(int number) {
  std::array<char, 16> digits{};
  comma();
  text_.append(digits.data(),
               std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr);
  return *this;
}

JsonWriter& JsonWriter::value(double number) {
  if (!std::isfinite(number)) return null();
  std::array<char, 32> digits{};
  comma();
  text_.append(digits.data(),
               std::to_chars(digits.data(), digits.data() + digits.size(), number).ptr);
  return *this;
}

JsonWriter& JsonWriter::null() {
  comma();
  text_ += "null";
  return *this;
}

}  // namespace vok::matchreport
