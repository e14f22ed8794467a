// A piece of a long text: what was read and not yet used. Lines and objects are views of it, so
// that the text is nowhere copied but for the rest of a line at the window's end.
#pragma once

#include <memory>
#include <string>
#include <string_view>

#include "bytesource.h"

namespace vok::gamelogs {

class TextWindow {
 public:
  /// The longest line or object that a log may have. A server's longest ones have 10 kB.
  static constexpr std::size_t SIZE = std::size_t{1} << 19U;

  /// Begins with a source's first bytes; false, with the reason in `problem`, without it.
  bool open(const std::string& name);

  /// What was read and not yet used; until the next call of `more` or `line`.
  std::string_view text() const { return {buffer_.get() + begin_, end_ - begin_}; }
  void drop(std::size_t n) { begin_ += n; }

  /// Reads on; false at the source's end and when the window is full of unused text.
  bool more();
  bool full() const { return begin_ == 0 && end_ == SIZE; }

  /// The next line without its end. At the text's end the rest is a line, too, with `cut`. Of a
  /// line longer than the window only the beginning comes, and the rest of it is skipped.
  bool line(std::string_view& found, bool& cut);

  const std::string& problem() const { return source_.problem(); }

 private:
  static constexpr std::size_t PIECE = std::size_t{1} << 17U;

  void skipLongLine();

  ByteSource source_;
  std::unique_ptr<char[]> buffer_;  // NOLINT(modernize-avoid-c-arrays): filled by reading only
  std::size_t begin_ = 0;
  std::size_t end_ = 0;
  bool inLongLine_ = false;
};

/// A sentence on what is wrong with a file of lines: how many were refused, the first of them, the
/// lines read, and whether the end is missing. Empty when all is well.
std::string damageRemark(long refused, long firstRefused, long lines, bool isCut);

}  // namespace vok::gamelogs
