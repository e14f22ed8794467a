// The one datagram endpoint of a client.
#pragma once

#include <netinet/in.h>

#include <cstddef>
#include <string>
#include <vector>

namespace vok {

/// Any fault of the socket. `number` is the system's error number where one applies, else -1 or -2.
class UDPSocketError {
 public:
  UDPSocketError(const char* message, int number) : errmsg(message), errNo(number) {}
  virtual ~UDPSocketError() = default;
  UDPSocketError(const UDPSocketError&) = default;
  UDPSocketError& operator=(const UDPSocketError&) = default;

  const char* msg() const { return errmsg.c_str(); }
  int number() const { return errNo; }

 private:
  std::string errmsg;
  int errNo;
};

/// Nothing came within the time-out.
class UDPTimeOut : public UDPSocketError {
 public:
  UDPTimeOut() : UDPSocketError("select timed out", -1) {}
};

/// The caller's flag asked for action before the wait.
class UDPAct : public UDPSocketError {
 public:
  UDPAct() : UDPSocketError("need to act", -1) {}
};

/// A UDP socket on any free local port that talks to one server. Every fault is thrown as a
/// `UDPSocketError`. The socket is never connected: the server answers from a port of its own, and
/// the source port of each datagram becomes the destination of the next ones.
class UDPSocket {
 public:
  /// Resolves `host`, creates and binds the socket. `maxMsgSize` bytes of a datagram are kept.
  UDPSocket(const char* host, int port, unsigned int maxMsgSize);
  ~UDPSocket();
  UDPSocket(const UDPSocket&) = delete;
  UDPSocket& operator=(const UDPSocket&) = delete;

  /// Sends a text as one datagram; with `withTerminator` its NUL byte goes along.
  void send(const char* msg, bool withTerminator = false);

  /// Waits up to `timeout` milliseconds (negative: without limit) for one datagram and returns it
  /// as a text that the next call overwrites. Throws `UDPAct` without waiting when `*flag` is set.
  const char* recv(int timeout, const bool* flag);

  /// Like `recv` without a wait, but returns null when nothing is waiting: for the drain, whose
  /// usual end this is.
  const char* tryRecv();

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
