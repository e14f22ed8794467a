// A stranger that sends as many datagrams as it is told: RATE a second from an address to a port of
// this machine, until SIGTERM. Prints how many they were.
#include <arpa/inet.h>
#include <sys/socket.h>
#include <unistd.h>

#include <array>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdlib>
#include <iostream>
#include <string>
#include <thread>

namespace {

volatile std::sig_atomic_t stopRequested = 0;

constexpr int BURST = 100;

sockaddr_in addressOf(const char* host, int port) {
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_port = htons(static_cast<std::uint16_t>(port));
  inet_pton(AF_INET, host, &address.sin_addr);
  return address;
}

}  // namespace

int main(int argc, char** argv) {
  if (argc != 4) {
    std::cerr << "usage: flood FROM-ADDRESS TO-PORT RATE\n";
    return 2;
  }
  const int sd = socket(AF_INET, SOCK_DGRAM, 0);
  const sockaddr_in from = addressOf(argv[1], 0);
  const sockaddr_in to = addressOf("127.0.0.1", std::atoi(argv[2]));
  if (bind(sd, reinterpret_cast<const sockaddr*>(&from), sizeof from) != 0 ||
      connect(sd, reinterpret_cast<const sockaddr*>(&to), sizeof to) != 0) {
    std::cerr << "flood: cannot send from " << argv[1] << "\n";
    return 1;
  }
  std::signal(SIGTERM, [](int) { stopRequested = 1; });

  std::string text = "(hear 1 referee time_over)";
  iovec bytes{text.data(), text.size()};
  std::array<mmsghdr, BURST> burst{};
  for (mmsghdr& message : burst) message.msg_hdr.msg_iov = &bytes;
  for (mmsghdr& message : burst) message.msg_hdr.msg_iovlen = 1;

  using Clock = std::chrono::steady_clock;
  const auto step =
      std::chrono::nanoseconds(std::int64_t{1'000'000'000} * BURST / std::atoi(argv[3]));
  long sent = 0;
  const auto begun = Clock::now();
  for (auto next = begun; stopRequested == 0; next += step) {
    std::this_thread::sleep_until(next);
    // An error is that of an earlier datagram, when nobody hears.
    sent += std::max(sendmmsg(sd, burst.data(), BURST, 0), 0);
  }
  const std::chrono::duration<double> took = Clock::now() - begun;
  std::cout << sent << " " << took.count() << std::endl;
  close(sd);
}
