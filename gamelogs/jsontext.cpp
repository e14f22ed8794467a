#include "jsontext.h"

#include <charconv>
#include <cstdint>

namespace vok::gamelogs {
namespace {

void appendUtf8(std::uint32_t code, std::string& to) {
  const auto put = [&to](std::uint32_t byte) { to += static_cast<char>(byte); };
  if (code < 0x80) {
    put(code);
  } else if (code < 0x800) {
    put(0xC0 | code >> 6U);
    put(0x80 | (code & 0x3FU));
  } else {
    put(0xE0 | code >> 12U);
    put(0x80 | (code >> 6U & 0x3FU));
    put(0x80 | (code & 0x3FU));
  }
}

char plainEscape(char c) {
  switch (c) {
    case 'b':
      return '\b';
    case 'f':
      return '\f';
    case 'n':
      return '\n';
    case 'r':
      return '\r';
    case 't':
      return '\t';
    default:
      return c;
  }
}

/// One escape behind its backslash. A character outside the basic plane, which is a pair of
/// escapes, becomes two characters.
void appendEscape(Scanner& in, std::string& to) {
  constexpr std::size_t DIGITS = 4;
  constexpr int BASE = 16;
  char c = 0;
  if (!in.character(c)) return;
  if (c != 'u') {
    to += plainEscape(c);
    return;
  }
  const std::string_view digits = in.rest().substr(0, DIGITS);
  std::uint32_t code = 0;
  const auto read = std::from_chars(digits.data(), digits.data() + digits.size(), code, BASE);
  in.advance(static_cast<std::size_t>(read.ptr - digits.data()));
  appendUtf8(code, to);
}

}  // namespace

bool JsonText::string(std::string_view& raw) {
  if (!take('"')) return false;
  const std::string_view text = in_.rest();
  std::size_t end = 0;
  while (end < text.size() && text[end] != '"') end += text[end] == '\\' ? 2 : 1;
  if (end >= text.size()) {
    ranOut_ = true;
    return false;
  }
  raw = text.substr(0, end);
  in_.advance(end + 1);
  return true;
}

bool JsonText::string(std::string& text) {
  std::string_view raw;
  if (!string(raw)) return false;
  text.clear();
  Scanner in(raw);
  char c = 0;
  while (in.character(c)) {
    if (c == '\\') {
      appendEscape(in, text);
    } else {
      text += c;
    }
  }
  return true;
}

bool JsonText::skipOne(std::size_t& depth) {
  std::string_view word;
  switch (peek()) {
    case '"':
      return string(word);
    case '{':
    case '[':
      ++depth;
      in_.advance(1);
      return true;
    case '}':
    case ']':
      if (depth == 0) return false;
      --depth;
      in_.advance(1);
      return true;
    case ',':
    case ':':
      in_.advance(1);
      return depth > 0;
    default:
      return !ranOut_ && in_.run(
                             [](char c) {
                               return isDigit(c) || isLetter(c) || c == '+' || c == '-' || c == '.';
                             },
                             word);
  }
}

bool JsonText::skip(std::string_view& raw) {
  if (peek() == '\0') return false;
  const std::string_view text = in_.rest();
  std::size_t depth = 0;
  do {
    if (!skipOne(depth)) return false;
  } while (depth > 0);
  raw = text.substr(0, text.size() - in_.rest().size());
  return true;
}

}  // namespace vok::gamelogs
