#include "UDPSocket.h"

#include <netdb.h>
#include <sys/select.h>
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

// Waits until the descriptor is readable; throws when it does not become so.
void waitReadable(int sd, int timeout) {
  fd_set readable;
  FD_ZERO(&readable);
  FD_SET(sd, &readable);
  timeval limit{timeout / 1000, (timeout % 1000) * 1000L};
  const int ready = select(sd + 1, &readable, nullptr, nullptr, timeout < 0 ? nullptr : &limit);
  if (ready == 0) throw UDPTimeOut();
  if (ready == -1) throw UDPSocketError("error while recving data", errno);
  if (ready != 1) throw UDPSocketError("unknown return value from select", -2);
}

}  // namespace

UDPSocket::UDPSocket(const char* host, int port, unsigned int newMaxMsgSize)
    : maxMsgSize(std::size_t{newMaxMsgSize} + 1) {
  if (newMaxMsgSize == 0) throw UDPSocketError("maxMsgSize <= 0", -1);
  recMsg.resize(maxMsgSize);

  const int created = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  if (created < 0) throw UDPSocketError("could not create socket", -1);
  // A descriptor beyond the set's size cannot be waited for.
  if (created >= FD_SETSIZE) giveUp(created, "could not create socket", -1);

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
  for (;;) {
    waitReadable(sd, timeout);
    // What the system called readable may turn out damaged and gone: then wait again.
    if (const char* text = tryRecv()) return text;
  }
}

const char* UDPSocket::tryRecv() {
  recMsg[0] = '\0';
  sockaddr_in sender{};
  ssize_t received = -1;
  do {
    socklen_t size = sizeof sender;
    received = recvfrom(sd, recMsg.data(), maxMsgSize - 1, MSG_DONTWAIT,
                        reinterpret_cast<sockaddr*>(&sender), &size);
  } while (received < 0 && errno == EINTR);
  if (received < 0 && (errno == EAGAIN || errno == EWOULDBLOCK)) return nullptr;
  if (received < 0) throw UDPSocketError("recvfrom returned without data", -1);

  recMsg[static_cast<std::size_t>(received)] = '\0';
  if (sender.sin_port != 0) srv.sin_port = sender.sin_port;
  return recMsg.data();
}

}  // namespace vok
