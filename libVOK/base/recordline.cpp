#include "recordline.h"

#include <charconv>

namespace vok {

namespace {

/// The character that a text begins with as \xNN; false when it does not.
bool readEscape(std::string_view text, char& c) {
  if (text.size() < ESCAPE_LENGTH || !text.starts_with("\\x")) return false;
  unsigned byte = 0;
  const char* const end = text.data() + ESCAPE_LENGTH;
  if (std::from_chars(text.data() + 2, end, byte, 16).ptr != end) return false;
  c = static_cast<char>(byte);
  return true;
}

}  // namespace

bool RecordLine::read(std::string_view line) {
  constexpr double TOO_LATE = 1e12;  // 30 years
  const std::size_t tab = line.find('\t');
  if (tab == line.npos) return false;
  const auto [end, error] = std::from_chars(line.data(), line.data() + tab, milliseconds);
  if (error != std::errc() || end != line.data() + tab) return false;
  if (!(milliseconds >= 0 && milliseconds < TOO_LATE)) return false;
  text = line.substr(tab + 1);
  direction = '\0';
  if (!text.starts_with("<\t") && !text.starts_with(">\t")) return true;
  direction = text.front();
  text.remove_prefix(2);
  if (text.find('\\') != text.npos) unescape();
  return true;
}

void RecordLine::unescape() {
  unescaped_.clear();
  while (!text.empty()) {
    char c = text.front();
    text.remove_prefix(readEscape(text, c) ? ESCAPE_LENGTH : 1);
    unescaped_ += c;
  }
  text = unescaped_;
}

}  // namespace vok
