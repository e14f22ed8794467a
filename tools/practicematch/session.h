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

/// Set by SIGINT and SIGTERM; every wait of a session then ends at once.
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

  /// False, with the reason in `error`, when the port is not to be had. Port 0 takes a free one.
  bool open(int port, std::string& error);
  int port() const;
  int descriptor() const { return sd; }

  /// Sends a text and a NUL byte. What the system refuses is lost, as datagrams may be.
  void send(std::string_view text, const sockaddr_in& to) const;
  /// The next waiting datagram, if any.
  std::optional<Command> receive(sockaddr_in& from) const;

 private:
  int sd = -1;
};

/// Others who are served while a session waits for its coach.
struct Company {
  std::vector<int> descriptors;
  std::function<bool()> serve = [] { return false; };  ///< true when something came from them
};

class Session {
 public:
  bool open(int port, std::string& error);
  int port() const { return publicSocket_.port(); }
  /// From now on every command is written to a file, a line each. False when it cannot be opened.
  bool logTo(const std::string& file);

  void keep(Company company) { company_ = std::move(company); }

  /// Waits for a coach to ask for its place and returns the name of its team. With a `team`, all
  /// others are refused; the company may name it meanwhile.
  std::optional<std::string> waitForCoach(Clock::time_point deadline, const std::string& team);

  void send(std::string_view text) const { ownSocket_.send(text, coach_); }

  /// The coach's next command; nothing at the deadline, when a stop is requested, or when
  /// something came from the company.
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
