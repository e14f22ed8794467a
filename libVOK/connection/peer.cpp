#include "peer.h"

#include <arpa/inet.h>

#include <array>
#include <iostream>

namespace vok {

namespace {

using AddressText = std::array<char, INET_ADDRSTRLEN>;

AddressText toText(const in_addr& address) {
  AddressText text{};
  inet_ntop(AF_INET, &address, text.data(), text.size());
  return text;
}

bool isCheckinAnswer(std::string_view text) {
  return text.starts_with("(init") || text.starts_with("(reconnect");
}

}  // namespace

bool Peer::admits(const sockaddr_in& sender, std::string_view text) {
  const bool isKnown = sender.sin_addr.s_addr == address_.sin_addr.s_addr;
  if (!isKnown && (isSettled_ || !isCheckinAnswer(text))) {
    if (dropped_++ == 0) {
      std::cerr << "CommError: dropped a datagram from " << toText(sender.sin_addr).data()
                << ": the server is at " << toText(address_.sin_addr).data() << "\n";
    }
    return false;
  }
  if (!isKnown) {
    std::cerr << "CommError: the server answers from " << toText(sender.sin_addr).data()
              << " instead of " << toText(address_.sin_addr).data() << "\n";
    address_.sin_addr = sender.sin_addr;
  }
  isSettled_ = isSettled_ || isCheckinAnswer(text);
  // Nothing can be sent to port 0, which a forged datagram may come from.
  if (sender.sin_port != 0) address_.sin_port = sender.sin_port;
  return true;
}

}  // namespace vok
