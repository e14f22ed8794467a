// The recording of a match: what a client receives and sends, for replays and reports.
//
// Who adds a text never waits for a disk. Texts go into a ring of memory, and a thread of the
// recorder writes them from there to the file. The two share nothing but the ring and three
// counters: `added_` moves only where texts are added, `written_` only in the thread, and the bytes
// between them belong to the thread. The thread writes nothing to standard error, which has one
// buffer; what went wrong is told where texts are added.
#pragma once

#include <array>
#include <atomic>
#include <chrono>
#include <condition_variable>
#include <cstddef>
#include <mutex>
#include <string>
#include <string_view>
#include <thread>
#include <vector>

namespace vok {

class MatchRecorder {
 public:
  /// Each "%t" in the name becomes the local time of `start`, YYYYmmddHHMMSS. Texts can be added at
  /// once, but there is no file yet, so that a check-in that fails leaves none.
  explicit MatchRecorder(std::string fileName);
  /// Writes what is left, and reports texts that are missing in the file.
  ~MatchRecorder();
  MatchRecorder(const MatchRecorder&) = delete;
  MatchRecorder& operator=(const MatchRecorder&) = delete;

  /// Creates the file, in place of an older one, and begins to write. When something fails, now or
  /// later, one line on standard error says so, and nothing more is recorded.
  void start();

  /// Allocate nothing and never wait. A text for which there is no room, because the file takes
  /// none, is left out.
  void received(std::string_view text) { add('<', text); }
  void sent(std::string_view text) { add('>', text); }

 private:
  using Clock = std::chrono::steady_clock;

  /// More than a second of the fastest match, or a minute and a half in real time.
  static constexpr std::size_t RING_SIZE = std::size_t{1} << 21U;

  void add(char direction, std::string_view text);
  void append(std::string_view piece);
  void appendEscaped(std::string_view text);
  void report();

  // In the thread.
  void writeUntilClosed();
  void writeAll(bool closing);
  bool hasRoom() const;

  std::string fileName_;
  const Clock::time_point begin_ = Clock::now();
  std::vector<char> ring_;
  int file_ = -1;

  // Numbers of bytes since the beginning; a byte lies in the ring at its number modulo the size.
  std::size_t next_ = 0;  ///< up to here the line is complete that is being added
  std::atomic<std::size_t> added_ = 0;
  std::atomic<std::size_t> written_ = 0;
  std::atomic<int> failure_ = 0;  ///< the system's error number
  long missing_ = 0;              ///< texts for which there was no room
  bool reported_ = false;

  std::thread writer_;
  std::mutex mutex_;
  std::condition_variable wake_;
  bool closing_ = false;
};

}  // namespace vok
