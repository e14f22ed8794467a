#include "matchrecorder.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <charconv>
#include <csignal>
#include <cstring>
#include <ctime>
#include <iostream>
#include <system_error>

#include "printable.h"
#include "recordline.h"

namespace vok {

namespace {

using std::chrono::milliseconds;

// What a process that is killed leaves behind lacks no more than this.
constexpr milliseconds PERIOD(100);
// How long a pipe may take nothing when the recording ends.
constexpr milliseconds PATIENCE(1000);

std::string withStartTime(std::string name) {
  constexpr std::string_view PLACE = "%t";
  const std::time_t now = std::time(nullptr);
  std::tm local{};
  localtime_r(&now, &local);
  std::array<char, 40> text{};
  const std::size_t length = std::strftime(text.data(), text.size(), "%Y%m%d%H%M%S", &local);
  for (std::size_t at = 0; (at = name.find(PLACE, at)) != name.npos; at += length) {
    name.replace(at, PLACE.size(), text.data(), length);
  }
  return name;
}

std::size_t lengthOf(std::string_view text, bool& escaped) {
  const auto n =
      static_cast<std::size_t>(std::count_if(text.begin(), text.end(), isEscapedInRecord));
  escaped = n > 0;
  return text.size() + n * (ESCAPE_LENGTH - 1);
}

}  // namespace

MatchRecorder::MatchRecorder(std::string fileName)
    : fileName_(std::move(fileName)), ring_(RING_SIZE) {}

MatchRecorder::~MatchRecorder() {
  if (writer_.joinable()) {
    {
      const std::lock_guard lock(mutex_);
      closing_ = true;
    }
    wake_.notify_one();
    writer_.join();
  }
  if (file_ < 0) return;
  // Some file systems tell only now that the disk is full.
  if (close(file_) != 0 && failure_ == 0) failure_ = errno;
  if (failure_ != 0) report();
  if (missing_ > 0) {
    std::cerr << "Recording: " << printable(fileName_) << " lacks " << missing_
              << " texts, because the file was too slow\n";
  }
}

void MatchRecorder::start() {
  fileName_ = withStartTime(std::move(fileName_));
  // A pipe that nobody reads must hold up neither the start nor the end.
  file_ = open(fileName_.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC | O_NONBLOCK, 0666);
  if (file_ < 0) {
    failure_ = errno;
    return report();
  }
  // The waits of the connection are ended by signals, which must not go to the thread instead.
  sigset_t all;
  sigset_t before;
  sigfillset(&all);
  pthread_sigmask(SIG_BLOCK, &all, &before);
  try {
    writer_ = std::thread(&MatchRecorder::writeUntilClosed, this);
  } catch (const std::system_error& error) {
    failure_ = error.code().value();
  }
  pthread_sigmask(SIG_SETMASK, &before, nullptr);
  if (failure_ != 0) report();
}

void MatchRecorder::report() {
  if (reported_) return;
  reported_ = true;
  std::cerr << "Recording: " << printable(fileName_) << ": " << std::strerror(failure_)
            << "; nothing more is recorded\n";
}

void MatchRecorder::add(char direction, std::string_view text) {
  if (failure_.load(std::memory_order_relaxed) != 0) return report();
  std::array<char, 40> head{};
  const auto now = std::chrono::duration_cast<std::chrono::microseconds>(Clock::now() - begin_);
  char* at = std::to_chars(head.data(), head.data() + head.size(), now.count() / 1000).ptr;
  // Three places: with the 1 in front of them the zeros come along, and the point takes its place.
  char* const point = at;
  at = std::to_chars(at, head.data() + head.size(), 1000 + now.count() % 1000).ptr;
  *point = '.';
  for (const char c : {'\t', direction, '\t'}) *at++ = c;
  const std::string_view begin(head.data(), static_cast<std::size_t>(at - head.data()));

  bool escaped = false;
  const std::size_t length = begin.size() + lengthOf(text, escaped) + 1;
  if (length > RING_SIZE - (next_ - written_.load(std::memory_order_acquire))) {
    ++missing_;
    return;
  }
  append(begin);
  escaped ? appendEscaped(text) : append(text);
  append("\n");
  added_.store(next_, std::memory_order_release);
}

void MatchRecorder::append(std::string_view piece) {
  const std::size_t at = next_ % RING_SIZE;
  const std::size_t n = std::min(piece.size(), RING_SIZE - at);
  piece.copy(ring_.data() + at, n);
  piece.substr(n).copy(ring_.data(), piece.size() - n);
  next_ += piece.size();
}

void MatchRecorder::appendEscaped(std::string_view text) {
  constexpr std::string_view DIGITS = "0123456789abcdef";
  for (const char c : text) {
    if (!isEscapedInRecord(c)) {
      append({&c, 1});
      continue;
    }
    const auto byte = static_cast<unsigned char>(c);
    const std::array<char, ESCAPE_LENGTH> shown = {'\\', 'x', DIGITS[byte / 16], DIGITS[byte % 16]};
    append({shown.data(), shown.size()});
  }
}

void MatchRecorder::writeUntilClosed() {
  for (bool closing = false; !closing && failure_ == 0;) {
    {
      std::unique_lock lock(mutex_);
      closing = wake_.wait_for(lock, PERIOD, [this] { return closing_; });
    }
    writeAll(closing);
  }
}

void MatchRecorder::writeAll(bool closing) {
  const std::size_t end = added_.load(std::memory_order_acquire);
  for (std::size_t done = written_; done < end;) {
    const std::size_t at = done % RING_SIZE;
    const ssize_t n = write(file_, ring_.data() + at, std::min(end - done, RING_SIZE - at));
    if (n > 0) {
      done += static_cast<std::size_t>(n);
      written_.store(done, std::memory_order_release);
      continue;
    }
    const int reason = n == 0 ? EIO : errno;
    if (reason == EINTR || (reason == EAGAIN && hasRoom())) continue;
    if (reason == EAGAIN && !closing) return;  // a pipe whose reader is slow: later
    failure_ = reason;
    return;
  }
}

bool MatchRecorder::hasRoom() const {
  pollfd file{file_, POLLOUT, 0};
  return poll(&file, 1, static_cast<int>(PATIENCE.count())) > 0;
}

}  // namespace vok
