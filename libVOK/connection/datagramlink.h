// The seam under the connection: where its texts come from and where its commands go. A match uses
// a socket, tools and tests use a list of texts.
#pragma once

#include <string>

namespace vok {

/// Any fault of a link. `number` is the system's error number where one applies, else -1 or -2.
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

/// One end of a conversation in datagrams. Every fault is thrown as a `UDPSocketError`.
class Link {
 public:
  Link() = default;
  virtual ~Link() = default;
  Link(const Link&) = delete;
  Link& operator=(const Link&) = delete;

  /// Sends a text as one datagram; with `withTerminator` its NUL byte goes along.
  virtual void send(const char* msg, bool withTerminator) = 0;

  /// Waits up to `timeout` milliseconds (negative: without limit) for one datagram and returns it
  /// as a text that the next call overwrites. Throws `UDPAct` without waiting when `*flag` is set,
  /// and `UDPTimeOut` when nothing came.
  virtual const char* recv(int timeout, const bool* flag) = 0;

  /// Like `recv` without a wait, but returns null when nothing is waiting: for the drain, which
  /// usually ends that way.
  virtual const char* tryRecv() = 0;
};

}  // namespace vok
