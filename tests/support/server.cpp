#include "support/server.h"

#include <arpa/inet.h>
#include <fcntl.h>
#include <poll.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <chrono>
#include <csignal>
#include <cstdio>
#include <fstream>
#include <sstream>
#include <thread>

namespace vok::test {

const char* const SHIPPED_CONFIG = VOK_SOURCE_DIR "/conf/agent.conf";

const char* const SERVER_PARAM =
    "(server_param (ball_decay 0.94)(ball_speed_max 3)(goal_width 14.02)(half_time 300)"
    "(player_speed_max 1.05)(say_coach_cnt_max 128)(say_coach_msg_size 128)(simulator_step 100)"
    "(slow_down_factor 1)(synch_mode 1))";
const char* const PLAYER_PARAM = "(player_param (player_types 7)(pt_max 1)(subs_max 3))";

namespace {

std::string visible(std::string text) {
  std::replace(text.begin(), text.end(), '\0', '$');
  return text;
}

int boundSocket() {
  const int sd = socket(AF_INET, SOCK_DGRAM, 0);
  sockaddr_in local{};
  local.sin_family = AF_INET;
  local.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  if (bind(sd, reinterpret_cast<const sockaddr*>(&local), sizeof local) != 0) std::perror("bind");
  return sd;
}

}  // namespace

ScriptedServer::ScriptedServer() : welcome_(boundSocket()), answering_(boundSocket()) {}

ScriptedServer::~ScriptedServer() {
  close(welcome_);
  close(answering_);
}

int ScriptedServer::port() const {
  sockaddr_in local{};
  socklen_t size = sizeof local;
  getsockname(welcome_, reinterpret_cast<sockaddr*>(&local), &size);
  return ntohs(local.sin_port);
}

std::string ScriptedServer::receive(int milliseconds) {
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

void ScriptedServer::sendBytes(std::string_view bytes) {
  hasAnswered_ = true;
  sendto(answering_, bytes.data(), bytes.size(), 0, reinterpret_cast<const sockaddr*>(&client_),
         sizeof client_);
}

void ScriptedServer::send(std::string_view text) {
  sendBytes(std::string(text) + '\0');
}

std::string ScriptedServer::answer(int milliseconds) {
  for (;;) {
    std::string text = receive(milliseconds);
    if (!text.starts_with("(say ") && !text.starts_with("(change_player_type ")) return text;
  }
}

std::string TextServer::receive() {
  return visible(takeCommand().value_or(""));
}

std::string TextServer::sent() {
  std::string all;
  for (std::string text; !(text = receive()).empty();) all += text;
  return all;
}

std::string TextServer::typeChanges() {
  std::string all;
  for (std::string text; (text = receive()) != "(done)";) {
    if (text.empty()) return "no answer";
    int number = 0;
    int type = 0;
    if (std::sscanf(text.c_str(), "(change_player_type %d %d)", &number, &type) == 2) {
      all += std::to_string(number) + ":" + std::to_string(type) + " ";
    }
  }
  return all;
}

std::string ScriptedServer::checkIn(char side, const std::string& parameters) {
  std::string init = receive();
  send(std::string("(init ") + side + " ok)");
  send(parameters);
  send(PLAYER_PARAM);
  return init;
}

std::string view(long time, double x, double y) {
  std::ostringstream text;
  text << "(see_global " << time << " ((g r) 52.5 0) ((g l) -52.5 0) ((b) " << x << " " << y
       << " 0 0) ((p \"Alpha\" 1 goalie) -50 0 0 0 0 0) ((p \"Beta\" 1 goalie) 50 0 0 0 180 0))";
  return text.str();
}

CoachProcess::CoachProcess(const Lines& arguments, const std::string& program)
    : errorFile_(open("/tmp", O_TMPFILE | O_RDWR | O_CLOEXEC, 0600)) {
  pid_ = fork();
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

CoachProcess::~CoachProcess() {
  if (pid_ > 0) wait(0);
  close(errorFile_);
}

void CoachProcess::signal(int number) const {
  kill(pid_, number);
}

int CoachProcess::wait(int milliseconds) {
  int status = 0;
  for (int passed = 0; waitpid(pid_, &status, WNOHANG) == 0; passed += 5) {
    if (passed >= milliseconds) {
      kill(pid_, SIGKILL);
      waitpid(pid_, &status, 0);
      break;
    }
    std::this_thread::sleep_for(std::chrono::milliseconds(5));
  }
  pid_ = -1;
  return WIFEXITED(status) ? WEXITSTATUS(status) : -1;
}

std::string CoachProcess::errors() const {
  std::ifstream file("/proc/self/fd/" + std::to_string(errorFile_));
  return {std::istreambuf_iterator<char>(file), {}};
}

Lines CoachProcess::reports() const {
  const Lines all = lines(errors());
  if (all.size() < 2 || all[0] != "Vokar RoboCup Online Coach") return {"no banner"};
  return {all.begin() + 2, all.end()};
}

ChangedConfig::ChangedConfig(const std::string& begin, const std::string& text)
    : path(testing::TempDir() + "vok-" + std::to_string(getpid()) + ".conf") {
  std::ifstream shipped(SHIPPED_CONFIG);
  std::ofstream changed(path, std::ios::binary);
  int number = 1;
  for (std::string read; std::getline(shipped, read); ++number) {
    const bool isIt = read.starts_with(begin);
    if (isIt) line = number;
    changed << (isIt ? text : read) << '\n';
  }
}

ChangedConfig::~ChangedConfig() {
  std::remove(path.c_str());
}

Lines coachArguments(int port, const Lines& more) {
  Lines all = {"-t", "Alpha", "-h", "127.0.0.1", "-p", std::to_string(port), "-f", SHIPPED_CONFIG};
  all.insert(all.end(), more.begin(), more.end());
  return all;
}

std::string playerType(int id) {
  return "(player_type (id " + std::to_string(id) +
         ")(player_speed_max 1.05)(stamina_inc_max 45)(player_decay 0.4)(inertia_moment 5)"
         "(dash_power_rate 0.006)(player_size 0.3)(kickable_margin 0.7)(kick_rand 0.1)"
         "(extra_stamina 50)(effort_max 1)(effort_min 0.6))";
}

std::pair<int, std::string> runCommand(const std::string& command) {
  FILE* pipe = popen((command + " 2>&1").c_str(), "r");
  std::string output;
  for (int c; (c = std::fgetc(pipe)) != EOF;) output += static_cast<char>(c);
  const int status = pclose(pipe);
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, output};
}

std::size_t count(const std::string& text, const std::string& what) {
  std::size_t n = 0;
  for (auto at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) ++n;
  return n;
}

Lines lines(const std::string& text) {
  std::istringstream in(text);
  Lines all;
  for (std::string line; std::getline(in, line);) all.push_back(line);
  return all;
}

}  // namespace vok::test
