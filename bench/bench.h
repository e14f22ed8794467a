// What the benchmarks share: recorded texts, a server on loopback, a coach in the midst of a match.
#pragma once

#include <netinet/in.h>

#include <memory>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "textlink.h"
#include "vokcoach.h"

namespace vok::bench {

/// What the program is started with.
extern const char* const SHIPPED_CONFIG;
/// What cycles are measured with: the optional keys are off, so that the figures of all versions
/// can be compared.
extern const char* const PLAIN_CONFIG;

/// Single views with their names: bench/data/views.txt.
std::vector<std::pair<std::string, std::string>> namedViews();

/// tests/data/realtime_left.txt, but with `types` player types announced instead of its 18.
std::vector<std::string> recording(int types = 18);

/// The views of the recorded play, over and over, with a time that only grows. The time stands in
/// a field of fixed width, so that no text is longer than another.
class Views {
 public:
  static constexpr long FIRST_TIME = 301;

  Views();
  /// The view of the next cycle; valid until the views come round.
  const std::string& next();
  long time() const { return now_; }

 private:
  std::vector<std::string> texts_;
  std::size_t at_ = 0;
  long now_ = FIRST_TIME - 1;
};

/// A server on one loopback port that knows one client: whoever spoke last.
class Server {
 public:
  Server();
  ~Server();
  Server(const Server&) = delete;
  Server& operator=(const Server&) = delete;

  int port() const;
  /// The next datagram; empty when none comes within three seconds.
  std::string_view receive();
  /// With the NUL byte behind the text.
  void send(const std::string& text);

 private:
  int sd;
  sockaddr_in client_{};
  std::array<char, 9000> buffer_{};
};

/// A coach that has followed the recording to its end, play-on at cycle 300. In real time: the
/// server's synchronous mode is off.
class CoachInMatch {
 public:
  explicit CoachInMatch(int types = 18);

  /// Takes a text in and runs the cycle that it may begin.
  void feed(const std::string& text);
  /// Has the referee call a mode now.
  void call(const std::string& mode);

  TextLink link;
  std::unique_ptr<VokCoach> coach;
  Views views;

 private:
  int fed_ = 0;
};

/// Runs whole cycles of "play_on" or "free_kick" for an instruction count or a profile; false for
/// another name. All that is to be counted happens inside `measuredCycle`.
bool runCycles(std::string_view situation, int cycles);

// Register the benchmarks of one file each.
void addParsing();
void addCycles();
void addProcesses();
void addSeeing();

}  // namespace vok::bench
