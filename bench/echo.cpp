// The least that can answer a server: says hello on loopback to the port behind "-p", the sixth
// argument, and "(done)" to each "(think)".
#include <arpa/inet.h>
#include <sys/socket.h>

#include <array>
#include <cstdint>
#include <cstdlib>
#include <string_view>

int main(int argc, char** argv) {
  if (argc < 7) return 1;
  const int sd = socket(AF_INET, SOCK_DGRAM, 0);
  sockaddr_in server{};
  server.sin_family = AF_INET;
  server.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  server.sin_port = htons(static_cast<std::uint16_t>(std::atoi(argv[6])));
  const auto say = [&](std::string_view text) {
    sendto(sd, text.data(), text.size(), 0, reinterpret_cast<const sockaddr*>(&server),
           sizeof server);
  };
  say("(init)");
  std::array<char, 9000> buffer{};
  for (;;) {
    const ssize_t n = recv(sd, buffer.data(), buffer.size(), 0);
    if (n < 0) return 1;
    if (std::string_view(buffer.data(), static_cast<std::size_t>(n)).starts_with("(think)")) {
      say("(done)");
    }
  }
}
