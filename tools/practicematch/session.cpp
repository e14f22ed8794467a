#include "session.h"

#include <arpa/inet.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cctype>
#include <cerrno>
#include <cstring>

namespace vok::practicematch {

namespace {

constexpr std::size_t MAX_DATAGRAM = 8192;
constexpr std::size_t MAX_TEAM_NAME = 15;

bool isInit(std::string_view text) {
  return text.starts_with("(init ") || text == "(init)";
}

bool nameCharacter(char c) {
  return std::isalnum(static_cast<unsigned char>(c)) != 0 || c == '-' || c == '_';
}

/// Digits and at most one point between them.
bool isVersion(std::string_view text) {
  const bool digits = std::all_of(text.begin(), text.end(), [](char c) {
    return std::isdigit(static_cast<unsigned char>(c)) != 0 || c == '.';
  });
  return digits && !text.empty() && text.front() != '.' &&
         std::count(text.begin(), text.end(), '.') <= 1;
}

}  // namespace

Socket::~Socket() {
  if (sd >= 0) close(sd);
}

bool Socket::open(int port, std::string& error) {
  sd = socket(AF_INET, SOCK_DGRAM | SOCK_NONBLOCK | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  if (sd >= 0 && bind(sd, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) {
    return true;
  }
  error = std::strerror(errno);
  return false;
}

int Socket::port() const {
  sockaddr_in address{};
  socklen_t size = sizeof address;
  getsockname(sd, reinterpret_cast<sockaddr*>(&address), &size);
  return ntohs(address.sin_port);
}

void Socket::send(std::string_view text, const sockaddr_in& to) const {
  std::string datagram(text);
  datagram += '\0';
  sendto(sd, datagram.data(), datagram.size(), 0, reinterpret_cast<const sockaddr*>(&to),
         sizeof to);
}

std::optional<Command> Socket::receive(sockaddr_in& from) const {
  std::array<char, MAX_DATAGRAM> buffer;
  socklen_t size = sizeof from;
  const ssize_t length =
      recvfrom(sd, buffer.data(), buffer.size(), 0, reinterpret_cast<sockaddr*>(&from), &size);
  if (length < 0) return std::nullopt;
  std::string_view text(buffer.data(), static_cast<std::size_t>(length));
  const bool terminated = text.ends_with('\0');
  return Command{std::string(text.substr(0, text.find('\0'))), terminated};
}

std::optional<std::string> initTeam(std::string_view text) {
  const std::string_view head = "(init ";
  const std::string_view version = " (version ";
  const std::string_view tail = "))";
  if (!text.starts_with(head) || !text.ends_with(tail)) return std::nullopt;
  text = text.substr(head.size(), text.size() - head.size() - tail.size());
  const std::size_t middle = text.find(version);
  if (middle == std::string_view::npos || !isVersion(text.substr(middle + version.size()))) {
    return std::nullopt;
  }
  const std::string_view team = text.substr(0, middle);
  const bool goodName = !team.empty() && team.size() <= MAX_TEAM_NAME &&
                        std::all_of(team.begin(), team.end(), nameCharacter);
  return goodName ? std::optional(std::string(team)) : std::nullopt;
}

bool Session::open(int port, std::string& error) {
  return publicSocket_.open(port, error) && ownSocket_.open(0, error);
}

// Polls in short slices, so that a signal just before the poll is noticed soon.
bool Session::wait(const Socket& other, Clock::time_point deadline) const {
  using std::chrono::milliseconds;
  const auto left = std::chrono::ceil<milliseconds>(deadline - Clock::now());
  if (stopRequested != 0 || left.count() < 0) return false;
  std::vector<pollfd> sockets = {{publicSocket_.descriptor(), POLLIN, 0},
                                 {other.descriptor(), POLLIN, 0}};
  for (const int descriptor : company_.descriptors) sockets.push_back({descriptor, POLLIN, 0});
  poll(sockets.data(), sockets.size(),
       static_cast<int>(std::min<milliseconds::rep>(left.count(), 100)));
  return true;
}

std::optional<std::string> Session::waitForCoach(Clock::time_point deadline,
                                                 const std::string& team) {
  do {
    company_.serve();
    sockaddr_in from{};
    while (const auto command = publicSocket_.receive(from)) {
      auto name = initTeam(command->text);
      if (name && (team.empty() || *name == team)) {
        coach_ = from;
        return name;
      }
      publicSocket_.send(name                    ? "(error no_such_team)"
                         : isInit(command->text) ? "(error illegal_command_form)"
                                                 : "(error only_init_allowed_on_init_port)",
                         from);
    }
  } while (wait(publicSocket_, deadline));
  return std::nullopt;
}

void Session::refuseLateComers() {
  sockaddr_in from{};
  while (const auto command = publicSocket_.receive(from)) {
    publicSocket_.send(isInit(command->text) ? "(error already_have_coach)"
                                             : "(error only_init_allowed_on_init_port)",
                       from);
  }
}

bool Session::logTo(const std::string& file) {
  log_.open(file);
  return log_.is_open();
}

std::optional<Command> Session::receive(Clock::time_point deadline) {
  do {
    refuseLateComers();
    sockaddr_in from{};
    while (auto command = ownSocket_.receive(from)) {
      if (!sameAddress(from, coach_)) continue;
      if (log_.is_open()) log_ << command->text << std::endl;
      return command;
    }
    if (company_.serve()) return std::nullopt;
  } while (wait(ownSocket_, deadline));
  return std::nullopt;
}

}  // namespace vok::practicematch
