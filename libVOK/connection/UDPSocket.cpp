#include "UDPSocket.h"

#include <linux/filter.h>
#include <linux/sock_diag.h>
#include <netdb.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <climits>
#include <cstdint>
#include <cstring>
#include <ctime>
#include <string_view>

#include "stopsignals.h"

namespace vok {

namespace {

// Closes the descriptor of a socket whose construction failed half way.
[[noreturn]] void giveUp(int sd, const char* message, int number) {
  close(sd);
  throw UDPSocketError(message, number);
}

// Signals are let in during waits only. After so many datagrams in a row that needed none they are
// let in all the same, and after so many of others in a row the caller goes on.
constexpr int MAX_WITHOUT_WAIT = 1000;

constexpr unsigned SOURCE_IN_IP_HEADER = 12;
constexpr unsigned UDP_HEADER_SIZE = 8;

/// The first four characters of a text as a filter of the system reads them.
constexpr std::uint32_t beginOf(std::string_view text) {
  std::uint32_t begin = 0;
  for (const char c : text.substr(0, 4)) begin = begin << 8 | static_cast<unsigned char>(c);
  return begin;
}

// What the system refuses for want of memory or of room in a table it often grants a moment later.
constexpr int MAX_TRIES = 5;
constexpr timespec BETWEEN_TRIES = {0, 1'000'000};

/// Whether a call that has failed is to be made again: after a signal always, else some times.
bool isWorthAnotherTry(int& tries) {
  if (errno == EINTR) return true;
  if (++tries == MAX_TRIES) return false;
  nanosleep(&BETWEEN_TRIES, nullptr);
  return true;
}

}  // namespace

UDPSocket::UDPSocket(const char* host, int port, unsigned int bytesKept)
    : maxMsgSize(std::size_t{bytesKept} + 1) {
  if (bytesKept == 0) throw UDPSocketError("maxMsgSize <= 0", -1);
  recMsg.resize(maxMsgSize);

  const int created = socket(AF_INET, SOCK_DGRAM | SOCK_CLOEXEC, 0);
  if (created < 0) throw UDPSocketError("could not create socket", -1);

  sockaddr_in server{};
  server.sin_family = AF_INET;
  const hostent* entry = gethostbyname(host);
  if (entry == nullptr || entry->h_addrtype != AF_INET) {
    giveUp(created, "server host unknown", -1);
  }
  std::memcpy(&server.sin_addr, entry->h_addr_list[0], sizeof server.sin_addr);
  server.sin_port = htons(static_cast<std::uint16_t>(port));
  srv = Peer(server);

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
  int tries = 0;
  do {
    sent = sendto(sd, msg, length, 0, reinterpret_cast<const sockaddr*>(&srv.address()),
                  sizeof srv.address());
  } while (sent < 0 && isWorthAnotherTry(tries));
  if (sent != static_cast<ssize_t>(length)) throw UDPSocketError("could not send msg", -1);
}

const char* UDPSocket::recv(int timeout, const bool* flag) {
  recMsg[0] = '\0';
  if (flag != nullptr && *flag) throw UDPAct();
  const char* text = tryRecv();
  if (text != nullptr) return text;
  if (timeout == 0) throw UDPTimeOut();
  // The clock is asked only when nothing was there: a busy cycle makes one system call a datagram.
  const Clock::time_point end =
      timeout < 0 ? Clock::time_point::max() : Clock::now() + std::chrono::milliseconds(timeout);
  while (text == nullptr) {
    wait(end);
    text = tryRecv();
  }
  return text;
}

const char* UDPSocket::tryRecv() {
  recMsg[0] = '\0';
  const char* text = receive();
  if (text != nullptr && ++takenWithoutWait_ == MAX_WITHOUT_WAIT) letSignalsIn();
  return text;
}

void UDPSocket::letSignalsIn() {
  takenWithoutWait_ = 0;
  const timespec noTime{};
  ppoll(nullptr, 0, &noTime, &signalsInWaits());
}

void UDPSocket::wait(Clock::time_point end) {
  takenWithoutWait_ = 0;
  timespec left{};
  if (end != Clock::time_point::max()) {
    const auto rest = end - Clock::now();
    if (rest <= Clock::duration::zero()) throw UDPTimeOut();
    const auto whole = std::chrono::floor<std::chrono::seconds>(rest);
    left = {whole.count(), std::chrono::nanoseconds(rest - whole).count()};
  }
  pollfd waiting{sd, POLLIN, 0};
  const timespec* limit = end == Clock::time_point::max() ? nullptr : &left;
  int tries = 0;
  while (ppoll(&waiting, 1, limit, &signalsInWaits()) < 0) {
    if (errno == EINTR || !isWorthAnotherTry(tries)) {
      throw UDPSocketError("error while recving data", errno);
    }
  }
}

const char* UDPSocket::receive() {
  for (int others = 0; others < MAX_WITHOUT_WAIT; ++others) {
    sockaddr_in sender{};
    socklen_t size = sizeof sender;
    ssize_t received = -1;
    int tries = 0;
    do {
      received = recvfrom(sd, recMsg.data(), maxMsgSize - 1, MSG_DONTWAIT,
                          reinterpret_cast<sockaddr*>(&sender), &size);
    } while (received < 0 && errno != EAGAIN && isWorthAnotherTry(tries));
    if (received < 0 && errno == EAGAIN) return nullptr;
    if (received < 0) throw UDPSocketError("recvfrom returned without data", -1);

    recMsg[static_cast<std::size_t>(received)] = '\0';
    const bool isServers = srv.admits(sender, recMsg.data());
    const Filter wanted = srv.isSettled() ? Filter::SERVER : Filter::CHECK_IN;
    if (filter_ != wanted && (!isServers || filter_ != Filter::NONE)) shutOutOthers(wanted);
    if (isServers) return recMsg.data();
    recMsg[0] = '\0';
  }
  return nullptr;
}

/// Lets the system itself drop what does not come from the server's address: waking up for each
/// datagram of a flood would cost cycles, and the system's queue would have no room for the server.
void UDPSocket::shutOutOthers(Filter wanted) {
  const auto source = static_cast<unsigned>(SKF_NET_OFF) + SOURCE_IN_IP_HEADER;
  const std::uint32_t server = ntohl(srv.address().sin_addr.s_addr);
  const sock_filter drop = BPF_STMT(BPF_RET | BPF_K, 0);
  const sock_filter readText = BPF_STMT(BPF_LD | BPF_W | BPF_ABS, UDP_HEADER_SIZE);
  // The numbers behind a jump are how many rows it leaves out if the two are equal, and if not.
  std::array<sock_filter, 9> filter = {{
      BPF_STMT(BPF_LD | BPF_W | BPF_ABS, source),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, server, 6, 0),
      wanted == Filter::SERVER ? drop : readText,
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, beginOf("(init"), 4, 0),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, beginOf("(reconnect"), 3, 0),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, beginOf("(server_param"), 2, 0),
      BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, beginOf("(player_param"), 1, 0),
      drop,
      BPF_STMT(BPF_RET | BPF_K, UINT_MAX),
  }};
  const sock_fprog program = {filter.size(), filter.data()};
  if (filter_ == Filter::NONE) droppedBefore_ = droppedBySystem();
  filter_ = wanted;
  // Without the filter the address is still tested here.
  setsockopt(sd, SOL_SOCKET, SO_ATTACH_FILTER, &program, sizeof program);
}

std::uint64_t UDPSocket::droppedBySystem() const {
  std::array<std::uint32_t, SK_MEMINFO_VARS> counts{};
  socklen_t size = sizeof counts;
  if (getsockopt(sd, SOL_SOCKET, SO_MEMINFO, counts.data(), &size) != 0) return 0;
  return counts[SK_MEMINFO_DROPS];
}

std::uint64_t UDPSocket::dropped() const {
  if (filter_ == Filter::NONE) return srv.dropped();
  // The system may fail to tell.
  return srv.dropped() + std::max(droppedBySystem(), droppedBefore_) - droppedBefore_;
}

}  // namespace vok
