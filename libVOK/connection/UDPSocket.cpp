#include "UDPSocket.h"

#include <netdb.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstdint>
#include <cstring>

namespace vok {

namespace {

// Closes the descriptor of a socket whose construction failed half way.
[[noreturn]] void giveUp(int sd, const char* message, int number) {
  close(sd);
  throw UDPSocketError(message, number);
}

// "Without limit", in milliseconds. Every signal interrupts a wait with a limit, but not one
// without: a handler may have been installed so that the system resumes what it interrupts.
constexpr int DAY = 24 * 3600 * 1000;

}  // namespace

UDPSocket::UDPSocket(const char* host, int port, unsigned int bytesKept)
    : maxMsgSize(std::size_t{bytesKept} + 1) {
  if (bytesKept == 0) throw UDPSocketError("maxMsgSize <= 0", -1);
  recMsg.resize(maxMsgSize);

  const int created = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  if (created < 0) throw UDPSocketError("could not create socket", -1);

  srv.sin_family = AF_INET;
  const hostent* entry = gethostbyname(host);
  if (entry == nullptr || entry->h_addrtype != AF_INET) {
    giveUp(created, "server host unknown", -1);
  }
  std::memcpy(&srv.sin_addr, entry->h_addr_list[0], sizeof srv.sin_addr);
  srv.sin_port = htons(static_cast<std::uint16_t>(port));

  sockaddr_in local{};
  local.sin_family = AF_INET;
  local.sin_addr.s_addr = htonl(INADDR_ANY);
  if (bind(created, reinterpret_cast<const sockaddr*>(&local), sizeof local) != 0) {
    giveUp(created, "could not bind socket", errno);
  }
  sd = created;
}

UDPSocket::~UDPSocket() {
  if (sd >= 0) close(sd);
}

void UDPSocket::send(const char* msg, bool withTerminator) {
  const std::size_t length = std::strlen(msg) + (withTerminator ? 1 : 0);
  ssize_t sent = -1;
  do {
    sent = sendto(sd, msg, length, 0, reinterpret_cast<const sockaddr*>(&srv), sizeof srv);
  } while (sent < 0 && errno == EINTR);
  if (sent != static_cast<ssize_t>(length)) throw UDPSocketError("could not send msg", -1);
}

const char* UDPSocket::recv(int timeout, const bool* flag) {
  recMsg[0] = '\0';
  if (flag != nullptr && *flag) throw UDPAct();
  if (timeout != 0) limitWait(timeout < 0 ? DAY : timeout);
  do {
    const char* text = timeout == 0 ? tryRecv() : receive(0);
    if (text != nullptr) return text;
  } while (timeout < 0);
  throw UDPTimeOut();
}

const char* UDPSocket::tryRecv() {
  recMsg[0] = '\0';
  return receive(MSG_DONTWAIT);
}

void UDPSocket::limitWait(int milliseconds) {
  if (milliseconds == waitLimit_) return;
  const timeval limit{milliseconds / 1000, (milliseconds % 1000) * 1000L};
  if (setsockopt(sd, SOL_SOCKET, SO_RCVTIMEO, &limit, sizeof limit) != 0) {
    throw UDPSocketError("error while recving data", errno);
  }
  waitLimit_ = milliseconds;
}

const char* UDPSocket::receive(int flags) {
  sockaddr_in sender{};
  socklen_t size = sizeof sender;
  const ssize_t received = recvfrom(sd, recMsg.data(), maxMsgSize - 1, flags,
                                    reinterpret_cast<sockaddr*>(&sender), &size);
  if (received < 0 && (errno == EAGAIN || errno == EWOULDBLOCK)) return nullptr;
  if (received < 0 && errno == EINTR) throw UDPSocketError("error while recving data", EINTR);
  if (received < 0) throw UDPSocketError("recvfrom returned without data", -1);

  recMsg[static_cast<std::size_t>(received)] = '\0';
  if (sender.sin_port != 0) srv.sin_port = sender.sin_port;
  return recMsg.data();
}

}  // namespace vok
