// The coach's connection: it checks in at the public port and is served from a port of its own.
#pragma once

#include <netinet/in.h>

#include <chrono>
#include <csignal>
#include <fstream>
#include <functional>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

namespace vok::practicematch {

using Clock = std::chrono::steady_clock;

/// Set by SIGINT and SIGTERM. Every wait of a session then ends at once.
inline volatile std::sig_atomic_t stopRequested = 0;

/// A text of the coach, without its terminator.
struct Command {
  std::string text;
  bool terminated;  ///< it ended in a NUL byte
};

/// A datagram socket on the loopback address.
class Socket {
 public:
  Socket() = default;
  ~Socket();
  Socket(const Socket&) = delete;
  Socket& operator=(const Socket&) = delete;

  /// Returns false, with the reason in `error`, when the port cannot be opened. Port 0 takes a free
  /// one.
  bool open(int port, std::string& error);
  int port() const;
  int descriptor() const { return sd; }

  /// Sends a text and a NUL byte. Errors are ignored, since datagrams may get lost anyway.
  void send(std::string_view text, const sockaddr_in& to) const;
  /// The next waiting datagram, if any.
  std::optional<Command> receive(sockaddr_in& from) const;

 private:
  int sd = -1;
};

/// Other clients that are served while a session waits for its coach.
struct Company {
  std::vector<int> descriptors;
  std::function<bool()> serve = [] { return false; };  ///< true when one of them sent something
};

class Session {
 public:
  bool open(int port, std::string& error);
  int port() const { return publicSocket_.port(); }
  /// From now on writes every command to a file, a line each. False when it cannot be opened.
  bool logTo(const std::string& file);

  void keep(Company company) { company_ = std::move(company); }

  /// Waits for a coach to check in and returns the name of its team. Unless `team` is empty,
  /// coaches of other teams are refused; `team` may be set by the company in the meantime.
  std::optional<std::string> waitForCoach(Clock::time_point deadline, const std::string& team);

  void send(std::string_view text) const { ownSocket_.send(text, coach_); }

  /// The coach's next command. Returns nothing at the deadline, when a stop is requested, or when
  /// the company sent something.
  std::optional<Command> receive(Clock::time_point deadline);

 private:
  void refuseLateComers();
  bool wait(const Socket& other, Clock::time_point deadline) const;

  Socket publicSocket_;
  Socket ownSocket_;
  sockaddr_in coach_{};
  std::ofstream log_;
  Company company_;
};

inline bool sameAddress(const sockaddr_in& a, const sockaddr_in& b) {
  return a.sin_addr.s_addr == b.sin_addr.s_addr && a.sin_port == b.sin_port;
}

/// The team's name in "(init NAME (version N))"; nothing when the text is no such command.
std::optional<std::string> initTeam(std::string_view text);

}  // namespace vok::practicematch
