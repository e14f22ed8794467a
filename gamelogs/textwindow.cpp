#include "textwindow.h"

#include <algorithm>
#include <cstring>

namespace vok::gamelogs {

bool TextWindow::open(const std::string& name) {
  if (!buffer_) buffer_ = std::make_unique_for_overwrite<char[]>(SIZE);
  begin_ = end_ = 0;
  inLongLine_ = false;
  return source_.open(name);
}

bool TextWindow::more() {
  if (begin_ > 0) {
    std::memmove(buffer_.get(), buffer_.get() + begin_, end_ - begin_);
    end_ -= begin_;
    begin_ = 0;
  }
  if (end_ == SIZE) return false;
  const std::size_t got = source_.read(buffer_.get() + end_, std::min(PIECE, SIZE - end_));
  end_ += got;
  return got > 0;
}

void TextWindow::skipLongLine() {
  do {
    const std::size_t newline = text().find('\n');
    if (newline != std::string_view::npos) {
      drop(newline + 1);
      inLongLine_ = false;
      return;
    }
    drop(text().size());
  } while (more());
  inLongLine_ = false;
}

bool TextWindow::line(std::string_view& found, bool& cut) {
  if (inLongLine_) skipLongLine();
  cut = false;
  std::size_t searched = 0;
  for (;;) {
    const std::size_t newline = text().find('\n', searched);
    if (newline != std::string_view::npos) {
      found = text().substr(0, newline);
      drop(newline + 1);
      return true;
    }
    searched = text().size();
    if (!full() && more()) continue;
    found = text();
    inLongLine_ = full();
    cut = !inLongLine_;
    drop(found.size());
    return !found.empty();
  }
}

std::string damageRemark(long refused, long firstRefused, long lines, bool isCut) {
  std::string text;
  if (refused > 0) {
    text = "line " + std::to_string(firstRefused) + " is damaged";
    if (refused > 1) {
      text += " and " + std::to_string(refused - 1) + " more of " + std::to_string(lines);
    }
  }
  if (isCut) text += text.empty() ? "it is cut off" : "; it is cut off";
  return text;
}

}  // namespace vok::gamelogs
