#include "errorlines.h"

#include <poll.h>
#include <unistd.h>

#include <cerrno>
#include <iostream>

namespace vok {

namespace {

constexpr int PATIENCE = 20;  // milliseconds
constexpr int MAX_TRIES = 10;

}  // namespace

ErrorLines::ErrorLines() : before_(std::cerr.rdbuf(this)) {}

ErrorLines::~ErrorLines() {
  write();
  std::cerr.rdbuf(before_);
}

ErrorLines::int_type ErrorLines::overflow(int_type c) {
  if (traits_type::eq_int_type(c, traits_type::eof())) return traits_type::not_eof(c);
  text_[length_++] = traits_type::to_char_type(c);
  if (length_ == text_.size() || text_[length_ - 1] == '\n') write();
  return c;
}

void ErrorLines::write() {
  std::size_t done = 0;
  for (int tries = 0; done < length_ && tries < MAX_TRIES; ++tries) {
    pollfd out{STDERR_FILENO, POLLOUT, 0};
    isStuck_ = poll(&out, 1, isStuck_ ? 0 : PATIENCE) == 0;
    if (isStuck_) break;
    const ssize_t written = ::write(STDERR_FILENO, text_.data() + done, length_ - done);
    if (written >= 0) {
      done += static_cast<std::size_t>(written);
    } else if (errno != EINTR && errno != EAGAIN) {
      break;
    }
  }
  length_ = 0;
}

}  // namespace vok
