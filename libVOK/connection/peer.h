// Who is heard: the server, and no other machine of the network.
#pragma once

#include <netinet/in.h>

#include <cstdint>
#include <string_view>

namespace vok {

/// The address of the server as far as it is known. It begins with what the host's name resolved
/// to and is settled by the answer to the check-in, which a server with several addresses may send
/// from another one. From then on only datagrams from that address are heard; the port may change
/// with each of them, since the server answers a client from a port of its own.
class Peer {
 public:
  Peer() = default;
  explicit Peer(const sockaddr_in& resolved) : address_(resolved) {}

  /// Whether a datagram is the server's; its port then becomes the destination of the next ones.
  /// A datagram that is not the server's is counted. Writes a line when the first one is dropped
  /// and when the check-in is answered from another address than the resolved one.
  bool admits(const sockaddr_in& sender, std::string_view text);

  /// Where commands go.
  const sockaddr_in& address() const { return address_; }
  bool isSettled() const { return isSettled_; }
  std::uint64_t dropped() const { return dropped_; }

 private:
  sockaddr_in address_{};
  bool isSettled_ = false;
  std::uint64_t dropped_ = 0;
};

}  // namespace vok
