// Preloaded into a program, makes its calls of the system fail. VOK_FAIL_CALL="CALL N ERROR": the
// Nth CALL fails with this error number, below 0 all from the Nth on; the error 0 halves what it
// may move. With N = 0 nothing fails, and the last line on standard error is the number of the
// calls.
#include <dlfcn.h>
#include <fcntl.h>
#include <netdb.h>
#include <poll.h>
#include <sys/socket.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <string_view>
#include <type_traits>

namespace {

struct Failing {
  Failing() {
    const char* text = std::getenv("VOK_FAIL_CALL");
    if (text != nullptr) std::sscanf(text, "%31s %ld %d", name, &number, &error);
  }
  ~Failing() {
    if (number == 0) dprintf(STDERR_FILENO, "%ld\n", calls);
  }

  char name[32] = "";
  long number = 0;
  int error = 0;
  long calls = 0;
} failing;

/// Counts a call; true when it has to fail.
bool fails(const char* name) {
  if (failing.name != std::string_view(name)) return false;
  const long n = ++failing.calls;
  errno = failing.error;
  return n == failing.number || (failing.number < 0 && n >= -failing.number);
}

template <typename Function, typename... Arguments>
auto call(const char* name, Arguments... arguments) {
  const auto real = reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
  using Result = decltype(real(arguments...));
  if (!fails(name)) return real(arguments...);
  if constexpr (std::is_pointer_v<Result>) {
    return Result{};
  } else {
    return Result{-1};
  }
}

/// The same for a call that moves bytes.
template <typename Function, typename... Arguments>
ssize_t move(const char* name, int fd, auto* bytes, std::size_t size, Arguments... arguments) {
  const bool isIt = fails(name);
  if (isIt && failing.error != 0) return -1;
  const auto real = reinterpret_cast<Function*>(dlsym(RTLD_NEXT, name));
  return real(fd, bytes, isIt ? size / 2 : size, arguments...);
}

}  // namespace

extern "C" {

int socket(int domain, int type, int protocol) noexcept {
  return call<decltype(socket)>("socket", domain, type, protocol);
}
int bind(int sd, const sockaddr* address, socklen_t size) noexcept {
  return call<decltype(bind)>("bind", sd, address, size);
}
int setsockopt(int sd, int level, int option, const void* value, socklen_t size) noexcept {
  return call<decltype(setsockopt)>("setsockopt", sd, level, option, value, size);
}
int getsockopt(int sd, int level, int option, void* value, socklen_t* size) noexcept {
  return call<decltype(getsockopt)>("getsockopt", sd, level, option, value, size);
}
hostent* gethostbyname(const char* host) {
  return call<decltype(gethostbyname)>("gethostbyname", host);
}
int ppoll(pollfd* waiting, nfds_t n, const timespec* limit, const sigset_t* mask) {
  return call<decltype(ppoll)>("ppoll", waiting, n, limit, mask);
}
int poll(pollfd* waiting, nfds_t n, int limit) {
  return call<decltype(poll)>("poll", waiting, n, limit);
}
int clock_gettime(clockid_t clock, timespec* time) noexcept {
  *time = {};  // the caller does not learn of a failure
  return call<decltype(clock_gettime)>("clock_gettime", clock, time);
}
ssize_t recvfrom(int sd, void* to, std::size_t n, int flags, sockaddr* from, socklen_t* size) {
  return call<decltype(recvfrom)>("recvfrom", sd, to, n, flags, from, size);
}
ssize_t sendto(int sd, const void* text, std::size_t n, int flags, const sockaddr* to,
               socklen_t size) {
  return move<decltype(sendto)>("sendto", sd, text, n, flags, to, size);
}
ssize_t write(int fd, const void* text, std::size_t n) {
  return move<decltype(write)>("write", fd, text, n);
}
ssize_t read(int fd, void* to, std::size_t n) {
  return move<decltype(read)>("read", fd, to, n);
}

/// A stream of the C library reads with calls of its own, this one with those above. One at a time.
std::FILE* fopen(const char* path, const char* mode) {
  static int fd = -1;
  fd = fails("fopen") ? -1 : open(path, O_RDONLY | O_CLOEXEC);
  if (fd < 0) return nullptr;
  const cookie_io_functions_t calls = {
      .read = [](void*, char* to, std::size_t n) { return read(fd, to, n); },
      .write = nullptr,
      .seek = nullptr,
      .close = [](void*) { return close(fd); }};
  return fopencookie(nullptr, mode, calls);
}

}  // extern "C"
