// A line of a recorded match: milliseconds since its beginning, a tab, "<" for a text that was
// received or ">" for one that was sent, a tab, and the text. Older recordings have no column with
// the direction; all of their texts were received.
//
// In a line with a direction, control characters and backslashes of the text are written as \xNN,
// so that no text can break the lines and each is read as it was.
#pragma once

#include <string>
#include <string_view>

namespace vok {

/// How many characters a line takes for one that stands as \xNN.
inline constexpr std::size_t ESCAPE_LENGTH = 4;

constexpr bool isEscapedInRecord(char c) {
  return static_cast<unsigned char>(c) < ' ' || c == '\x7f' || c == '\\';
}

class RecordLine {
 public:
  RecordLine() = default;
  RecordLine(const RecordLine&) = delete;
  RecordLine& operator=(const RecordLine&) = delete;

  /// Reads a line without its end. Returns false when it has another form.
  bool read(std::string_view line);

  bool sent() const { return direction == '>'; }

  double milliseconds = 0;
  char direction = '\0';  ///< '<', '>', or '\0' in a line without one
  std::string_view text;  ///< lives as long as the line, and until the next one is read

 private:
  void unescape();

  std::string unescaped_;
};

}  // namespace vok
