// A scripted simulator server and what tests need around it.
#pragma once

#include <fcntl.h>
#include <gtest/gtest.h>
#include <netinet/in.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <csignal>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "textlink.h"

namespace vok::test {

using Lines = std::vector<std::string>;

/// The path of the shipped configuration.
inline const char* const SHIPPED_CONFIG = VOK_SOURCE_DIR "/conf/agent.conf";
/// The path of the tests' own configuration, without the optional keys, so that what the tests
/// expect does not depend on what is shipped.
inline const char* const PLAIN_CONFIG = VOK_SOURCE_DIR "/tests/data/plain.conf";

/// The texts of a real server's check-in.
inline const char* const SERVER_PARAM =
    "(server_param (ball_decay 0.94)(ball_speed_max 3)(goal_width 14.02)(half_time 300)"
    "(player_speed_max 1.05)(say_coach_cnt_max 128)(say_coach_msg_size 128)(simulator_step 100)"
    "(slow_down_factor 1)(synch_mode 1))";
inline const char* const PLAYER_PARAM = "(player_param (player_types 7)(pt_max 1)(subs_max 3))";

/// What is there once.
struct Unique {
  Unique() = default;
  Unique(const Unique&) = delete;
  Unique& operator=(const Unique&) = delete;
};

/// A text's lines.
inline Lines lines(const std::string& text) {
  std::istringstream in(text);
  Lines all;
  for (std::string line; std::getline(in, line);) all.push_back(line);
  return all;
}

/// How often a text holds another one.
inline std::size_t count(const std::string& text, const std::string& what) {
  std::size_t n = 0;
  for (auto at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) ++n;
  return n;
}

/// A text with its NUL bytes made visible as '$'.
inline std::string visible(std::string text) {
  std::replace(text.begin(), text.end(), '\0', '$');
  return text;
}

/// What a terminal obeys, and how it is to be shown. A line may end at the carriage return.
inline const std::string CONTROLS = "\x1b[31m\x7f\x9b\r";
inline const std::string SHOWN_CONTROLS = "\\x1b[31m\\x7f\\x9b";
inline bool isPlain(const std::string& text) {
  return std::all_of(text.begin(), text.end(),
                     [](char c) { return c == '\n' || (c >= ' ' && c <= '~'); });
}

/// A see_global of the given time: ball at (x, y), no players but one of each team.
inline std::string view(long time, double x = 0, double y = 0) {
  std::ostringstream text;
  text << "(see_global " << time << " ((g r) 52.5 0) ((g l) -52.5 0) ((b) " << x << " " << y
       << " 0 0) ((p \"Alpha\" 1 goalie) -50 0 0 0 0 0) ((p \"Beta\" 1 goalie) 50 0 0 0 180 0))";
  return text.str();
}

/// The announcement of the default type under an id.
inline std::string playerType(int id) {
  return "(player_type (id " + std::to_string(id) +
         ")(player_speed_max 1.05)(stamina_inc_max 45)(player_decay 0.4)(inertia_moment 5)"
         "(dash_power_rate 0.006)(player_size 0.3)(kickable_margin 0.7)(kick_rand 0.1)"
         "(extra_stamina 50)(effort_max 1)(effort_min 0.6))";
}

/// The server's end of a connection without a socket.
class TextServer : public TextLink {
 public:
  using TextLink::TextLink;

  /// The next command as it came; "" when there is none.
  std::string receive() { return visible(takeCommand().value_or("")); }

  /// All commands up to now, one behind the other.
  std::string sent() {
    std::string all;
    for (std::string text; !(text = receive()).empty();) all += text;
    return all;
  }

  /// The player types asked for up to the next "(done)": "number:type " each.
  std::string typeChanges() {
    std::string all;
    for (std::string text; (text = receive()) != "(done)";) {
      if (text.empty()) return "no answer";
      if (!text.starts_with("(change_player_type ")) continue;
      text[text.find(' ', 20)] = ':';
      all += text.substr(20, text.find(')') - 20) + " ";
    }
    return all;
  }
};

/// FNV-1a.
inline std::uint64_t hashOf(const std::string& text) {
  std::uint64_t hash = 0xcbf29ce484222325;
  for (const char c : text) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001b3;
  return hash;
}

/// A server on a loopback port that answers from a second one, as the real one does: from its first
/// answer to a client on it hears only what that client sends to the second, up to its "(bye)".
/// Everything is said by the test.
class ScriptedServer : Unique {
 public:
  /// On 127.0.0.`host`: the system has all of these addresses.
  explicit ScriptedServer(unsigned host = 1) {
    sockaddr_in local{};
    local.sin_family = AF_INET;
    local.sin_addr.s_addr = htonl(0x7F000000U + host);
    socklen_t size = sizeof local;
    EXPECT_EQ(bind(answering_, reinterpret_cast<const sockaddr*>(&local), size), 0);
    EXPECT_EQ(bind(welcome_, reinterpret_cast<const sockaddr*>(&local), size), 0);
    getsockname(welcome_, reinterpret_cast<sockaddr*>(&local), &size);
    port_ = ntohs(local.sin_port);
  }
  ~ScriptedServer() {
    close(welcome_);
    close(answering_);
  }

  int port() const { return port_; }

  /// The next command as it came; "" when none comes in time.
  std::string receive(int milliseconds = 3000) {
    const int sd = hasAnswered_ ? answering_ : welcome_;
    pollfd waiting{sd, POLLIN, 0};
    if (poll(&waiting, 1, milliseconds) <= 0) return "";
    std::array<char, 9000> buffer{};
    socklen_t size = sizeof client_;
    const ssize_t n =
        recvfrom(sd, buffer.data(), buffer.size(), 0, reinterpret_cast<sockaddr*>(&client_), &size);
    std::string text = visible({buffer.data(), n > 0 ? static_cast<std::size_t>(n) : 0});
    if (text.starts_with("(bye)")) hasAnswered_ = false;
    return text;
  }

  /// The next command that is not a message or a type change, so that tests of the loop do not hang
  /// on what the coach has to say.
  std::string answer(int milliseconds = 3000) {
    for (;;) {
      std::string text = receive(milliseconds);
      if (!text.starts_with("(say ") && !text.starts_with("(change_player_type ")) return text;
    }
  }

  /// Sends a text with its NUL byte from the answering port; to whoever spoke last.
  void send(std::string_view text) { sendBytes(std::string(text) + '\0'); }
  void sendBytes(std::string_view bytes) {
    hasAnswered_ = true;
    sendto(answering_, bytes.data(), bytes.size(), 0, reinterpret_cast<const sockaddr*>(&client_),
           sizeof client_);
  }

  /// From now on talks to the client of another server.
  void address(const ScriptedServer& other) { client_ = other.client_; }

  /// Takes in the client's init and sends the three answers of a check-in. Returns the init.
  std::string checkIn(char side = 'l', const std::string& parameters = SERVER_PARAM) {
    std::string init = receive();
    send(std::string("(init ") + side + " ok)");
    send(parameters);
    send(PLAYER_PARAM);
    return init;
  }

 private:
  int welcome_ = socket(AF_INET, SOCK_DGRAM, 0);
  int answering_ = socket(AF_INET, SOCK_DGRAM, 0);  ///< gets its port when it first sends
  int port_ = 0;
  bool hasAnswered_ = false;
  sockaddr_in client_{};
};

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

/// A file of no name.
inline int newFile() {
  return open("/tmp", O_TMPFILE | O_RDWR | O_CLOEXEC, 0600);
}

/// The real coach program, or a program that starts it, as a child process.
class CoachProcess : Unique {
 public:
  explicit CoachProcess(const Lines& arguments,
                        const std::string& program = VOK_BIN_DIR "/onlinecoach",
                        int errorFile = newFile())
      : errorFile_(errorFile), pid_(fork()) {
    if (pid_ != 0) return;
    std::vector<char*> argv = {const_cast<char*>(program.c_str())};
    for (const std::string& a : arguments) argv.push_back(const_cast<char*>(a.c_str()));
    argv.push_back(nullptr);
    dup2(errorFile_, STDERR_FILENO);
    // Who starts the tests in the background has them ignored.
    for (const int number : {SIGINT, SIGHUP}) std::signal(number, SIG_DFL);
    execv(program.c_str(), argv.data());
    _exit(127);
  }
  ~CoachProcess() {
    if (pid_ > 0) wait(0);
    close(errorFile_);
  }

  /// Does nothing after the end, which another thread may have waited for: a process id of -1 would
  /// send the signal to every process of the user.
  void signal(int number) const {
    if (const int pid = pid_; pid > 0) kill(pid, number);
  }

  bool hasEnded() const {
    siginfo_t info{};
    return waitid(P_PID, static_cast<id_t>(pid_), &info, WEXITED | WNOHANG | WNOWAIT) != 0 ||
           info.si_pid != 0;
  }
  /// Waits for the end: the exit status, or -1 when it had to be killed after the time.
  int wait(int milliseconds = 8000) {
    int status = 0;
    for (int left = milliseconds; waitpid(pid_, &status, WNOHANG) == 0; left -= 5) {
      if (left <= 0) kill(pid_, SIGKILL);
      usleep(5000);
    }
    pid_ = -1;
    return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
  }

  /// All of standard error; after `wait`.
  std::string errors() const {
    std::ifstream file("/proc/self/fd/" + std::to_string(errorFile_));
    return {std::istreambuf_iterator<char>(file), {}};
  }
  /// Its lines behind the banner's two.
  Lines reports() const {
    const Lines all = lines(errors());
    if (all.size() < 2 || all[0] != "Vokar RoboCup Online Coach") return {"no banner"};
    return {all.begin() + 2, all.end()};
  }

 private:
  int errorFile_;
  std::atomic<int> pid_;
};

/// The arguments that start a coach of team "Alpha" at a server, and more, which win.
inline Lines coachArguments(int port, const Lines& more = {}) {
  Lines all = {"-t", "Alpha", "-h", "127.0.0.1", "-p", std::to_string(port), "-f", PLAIN_CONFIG};
  all.insert(all.end(), more.begin(), more.end());
  return all;
}

/// A file with the shipped configuration but for the line that begins so, which has another text.
class ChangedConfig : Unique {
 public:
  ChangedConfig(const std::string& begin, const std::string& text) {
    std::ifstream shipped(SHIPPED_CONFIG);
    std::ofstream changed(path, std::ios::binary);
    int number = 1;
    for (std::string read; std::getline(shipped, read); ++number) {
      const bool isIt = read.starts_with(begin);
      if (isIt) line = number;
      changed << (isIt ? text : read) << '\n';
    }
  }
  ~ChangedConfig() { std::remove(path.c_str()); }

  const std::string path = testing::TempDir() + "vok-" + std::to_string(getpid()) + ".conf";
  int line = 0;  ///< the number of that line
};

/// Runs a command of the shell: its status, and what it wrote on both streams.
inline std::pair<int, std::string> runCommand(const std::string& command) {
  FILE* pipe = popen((command + " 2>&1").c_str(), "r");
  std::string output;
  for (int c; (c = std::fgetc(pipe)) != EOF;) output += static_cast<char>(c);
  const int status = pclose(pipe);
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, output};
}

}  // namespace vok::test
