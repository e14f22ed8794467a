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

  /// What the system lets through: everything, until a stranger is there; then the server and what
  /// its second address may send in a check-in; after the answer the server only.
  enum class Filter { NONE, CHECK_IN, SERVER };

  /// Takes one datagram of the server; null when none is waiting.
  const char* receive();
  void wait(Clock::time_point end);
  void shutOutOthers(Filter wanted);
  void letSignalsIn();
  std::uint64_t droppedBySystem() const;

  int sd = -1;
  Peer srv;
  std::vector<char> recMsg;
  std::size_t maxMsgSize;
  Filter filter_ = Filter::NONE;
  std::uint64_t droppedBefore_ = 0;  ///< by the system, before it had a filter
  int takenWithoutWait_ = 0;
};

}  // namespace vok
