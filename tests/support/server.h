// A scripted simulator server and what tests need around it.
#pragma once

#include <gtest/gtest.h>
#include <netinet/in.h>

#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "textlink.h"

namespace vok::test {

using Lines = std::vector<std::string>;

/// The path of the shipped configuration.
extern const char* const SHIPPED_CONFIG;

/// The texts of a real server's check-in.
extern const char* const SERVER_PARAM;
extern const char* const PLAYER_PARAM;

/// What is there once.
struct Unique {
  Unique() = default;
  Unique(const Unique&) = delete;
  Unique& operator=(const Unique&) = delete;
};

/// The server's end of a connection without a socket.
class TextServer : public TextLink {
 public:
  using TextLink::TextLink;

  /// The next command as it came, its NUL byte made visible as '$'; "" when there is none.
  std::string receive();
  /// All commands up to now, one behind the other.
  std::string sent();
  /// The player types asked for up to the next "(done)": "number:type " each.
  std::string typeChanges();
};

/// A server on a loopback port that answers from a second one, as the real one does: from its first
/// answer to a client on it hears only what that client sends to the second, up to its "(bye)".
/// Everything is said by the test.
class ScriptedServer : Unique {
 public:
  ScriptedServer();
  ~ScriptedServer();

  int port() const;

  /// The next command as it came, its NUL byte made visible as '$'; "" when none comes in time.
  std::string receive(int milliseconds = 3000);
  /// Sends a text with its NUL byte from the answering port; to whoever spoke last.
  void send(std::string_view text);
  void sendBytes(std::string_view bytes);

  /// From now on talks to the client of another server.
  void address(const ScriptedServer& other) { client_ = other.client_; }
  /// The next command that is not a message or a type change, so that tests of the loop do not hang
  /// on what the coach has to say.
  std::string answer(int milliseconds = 3000);

  /// Takes in the client's init and sends the three answers of a check-in. Returns the init.
  std::string checkIn(char side = 'l', const std::string& parameters = SERVER_PARAM);

 private:
  int welcome_;
  int answering_;
  bool hasAnswered_ = false;
  sockaddr_in client_{};
};

/// A see_global of the given time: ball at (x, y), no players but one of each team.
std::string view(long time, double x = 0, double y = 0);

/// Standard error while it lives.
class StderrCapture : Unique {
 public:
  StderrCapture() { testing::internal::CaptureStderr(); }
  ~StderrCapture() { testing::internal::GetCapturedStderr(); }
  /// What was written since the last call.
  std::string take() {
    std::string text = testing::internal::GetCapturedStderr();
    testing::internal::CaptureStderr();
    return text;
  }
};

/// The real coach program, or a program that starts it, as a child process.
class CoachProcess : Unique {
 public:
  explicit CoachProcess(const Lines& arguments,
                        const std::string& program = VOK_BIN_DIR "/onlinecoach");
  ~CoachProcess();

  void signal(int number) const;
  /// Waits for the end: the exit status, or -1 when it had to be killed after the time.
  int wait(int milliseconds = 8000);
  /// All of standard error; after `wait`.
  std::string errors() const;
  /// Its lines behind the banner's two.
  Lines reports() const;

 private:
  int pid_;
  int errorFile_;
};

/// A file with the shipped configuration but for the line that begins so, which has another text.
class ChangedConfig : Unique {
 public:
  ChangedConfig(const std::string& begin, const std::string& text);
  ~ChangedConfig();

  const std::string path;
  int line = 0;  ///< the number of that line
};

/// The arguments that start a coach of team "Alpha" at a server, and more, which win.
Lines coachArguments(int port, const Lines& more = {});

/// The announcement of the default type under an id.
std::string playerType(int id);

/// Runs a command of the shell: its status, and what it wrote on both streams.
std::pair<int, std::string> runCommand(const std::string& command);

/// A text's lines.
Lines lines(const std::string& text);

/// How often a text holds another one.
std::size_t count(const std::string& text, const std::string& what);

}  // namespace vok::test
