// The one datagram endpoint of a client.
#pragma once

#include <netinet/in.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "datagramlink.h"
#include "peer.h"

namespace vok {

/// A UDP socket on any free local port that talks to one server. The socket is never connected:
/// the server answers from a port of its own, and the source port of each of its datagrams becomes
/// the destination of the next ones. Datagrams of others are dropped and prolong no wait.
class UDPSocket final : public Link {
 public:
  /// Resolves `host`, creates and binds the socket. `maxMsgSize` bytes of a datagram are kept.
  UDPSocket(const char* host, int port, unsigned int maxMsgSize);
  ~UDPSocket() override;

  void send(const char* msg, bool withTerminator = false) override;
  /// A signal that `signalsInWaits` lets in ends the wait with a `UDPSocketError` of number EINTR.
  const char* recv(int timeout, const bool* flag) override;
  const char* tryRecv() override;

  /// How many datagrams of others were dropped. Those that wait in a full queue of the system's
  /// count as well.
  std::uint64_t dropped() const;

 private:
  using Clock = std::chrono::steady_clock;

  /// Takes one datagram of the server; null when none is waiting.
  const char* receive();
  void wait(Clock::time_point end);
  void shutOutOthers();
  void letSignalsIn();
  std::uint64_t droppedBySystem() const;

  int sd = -1;
  Peer srv;
  std::vector<char> recMsg;
  std::size_t maxMsgSize;
  bool isFiltered_ = false;          ///< the system drops what others send
  std::uint64_t droppedBefore_ = 0;  ///< by the system, before that
  int takenWithoutWait_ = 0;
};

}  // namespace vok
