// The one datagram endpoint of a client.
#pragma once

#include <netinet/in.h>

#include <cstddef>
#include <vector>

#include "link.h"

namespace vok {

/// A UDP socket on any free local port that talks to one server. The socket is never connected:
/// the server answers from a port of its own, and the source port of each datagram becomes the
/// destination of the next ones.
class UDPSocket final : public Link {
 public:
  /// Resolves `host`, creates and binds the socket. `maxMsgSize` bytes of a datagram are kept.
  UDPSocket(const char* host, int port, unsigned int maxMsgSize);
  ~UDPSocket() override;

  void send(const char* msg, bool withTerminator = false) override;
  const char* recv(int timeout, const bool* flag) override;
  const char* tryRecv() override;

 private:
  void limitWait(int milliseconds);
  /// Null when nothing came; one system call, since this one's latency is the coach's.
  const char* receive(int flags);

  int sd = -1;
  int waitLimit_ = 0;  ///< of the system's receive calls, milliseconds; 0 without one
  sockaddr_in srv{};
  std::vector<char> recMsg;
  std::size_t maxMsgSize;
};

}  // namespace vok
