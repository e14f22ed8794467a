// The coach as a process of its own: how soon it answers "(think)", how soon it is there, and how
// much memory it takes.
#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <sched.h>
#include <spawn.h>
#include <sys/wait.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <fstream>

#include "bench.h"

namespace vok::bench {
namespace {

using Clock = std::chrono::steady_clock;

double secondsSince(Clock::time_point start) {
  return std::chrono::duration<double>(Clock::now() - start).count();
}

/// A program that speaks to a server's port; what it reports is dropped.
class Child {
 public:
  Child(const std::string& program, int port) {
    const std::string portText = std::to_string(port);
    const std::vector<const char*> argv = {program.c_str(), "-t",   "Alpha",          "-h",
                                           "127.0.0.1",     "-p",   portText.c_str(), "-f",
                                           SHIPPED_CONFIG,  nullptr};
    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    posix_spawn_file_actions_addopen(&actions, 2, "/dev/null", O_WRONLY, 0);
    char* const environment[] = {nullptr};
    if (posix_spawn(&pid_, program.c_str(), &actions, nullptr,
                    const_cast<char* const*>(argv.data()), environment) != 0) {
      pid_ = -1;
    }
    posix_spawn_file_actions_destroy(&actions);
  }
  ~Child() {
    if (pid_ <= 0) return;
    kill(pid_, SIGTERM);
    waitpid(pid_, nullptr, 0);
  }
  Child(const Child&) = delete;
  Child& operator=(const Child&) = delete;

  pid_t process() const { return pid_; }

  /// The most memory that was ever resident, in bytes.
  double peakMemory() const {
    std::ifstream status("/proc/" + std::to_string(pid_) + "/status");
    std::string word;
    double kilobytes = 0;
    while (status >> word && word != "VmHWM:") {
    }
    status >> kilobytes;
    return kilobytes * 1024;
  }

 private:
  pid_t pid_ = -1;
};

/// Keeps a process (0: this one) on one processor, the server's or the clients'. Left alone, a
/// scheduler may put a light client beside the server and a heavier one on a processor that it has
/// to wake first, which takes longer than everything that is measured here.
class Processor {
 public:
  enum Whose { SERVERS = 0, CLIENTS = 1 };

  Processor(pid_t process, Whose whose) : pid_(process) {
    sched_getaffinity(pid_, sizeof before_, &before_);
    cpu_set_t one;
    CPU_ZERO(&one);
    int number = 0;
    for (int cpu = 0; cpu < CPU_SETSIZE; ++cpu)
      if (CPU_ISSET(cpu, &before_) && number++ == whose) CPU_SET(cpu, &one);
    sched_setaffinity(pid_, sizeof one, &one);  // refused where there is but one processor
  }
  ~Processor() { sched_setaffinity(pid_, sizeof before_, &before_); }
  Processor(const Processor&) = delete;
  Processor& operator=(const Processor&) = delete;

 private:
  pid_t pid_;
  cpu_set_t before_;
};

const std::string COACH_PROGRAM = VOK_BIN_DIR "/onlinecoach";
const std::string ECHO_PROGRAM = VOK_BIN_DIR "/vokecho";

void checkIn(Server& server) {
  server.receive();
  std::vector<std::string> texts = recording();
  const std::string off = "(synch_mode 0)";
  texts[1].replace(texts[1].find(off), off.size(), "(synch_mode 1)");
  for (std::size_t i = 0; i < 3 + 18; ++i) server.send(texts[i]);
  server.send("(hear 0 referee play_on)");
}

/// One cycle; the seconds from "(think)" to its answer, negative when none comes.
double thinkToDone(Server& server, Views& views) {
  server.send(views.next());
  const Clock::time_point start = Clock::now();
  server.send("(think)");
  for (;;) {
    const std::string_view text = server.receive();
    if (text.empty()) return -1;
    if (text.starts_with("(done)")) return secondsSince(start);
  }
}

/// A program beside its server, checked in and warm.
struct Pair {
  Server server;
  Child child;
  Processor processor{child.process(), Processor::CLIENTS};
  Views views;
  std::vector<double> times;

  explicit Pair(const std::string& program) : child(program, server.port()) {
    checkIn(server);
    run(50);
    times.clear();
  }
  bool run(int cycles) {
    for (int i = 0; i < cycles; ++i) times.push_back(thinkToDone(server, views));
    return times.back() >= 0;
  }
  double percentile(std::size_t percent) {
    std::sort(times.begin(), times.end());
    return times[times.size() * percent / 100];
  }
};

/// The two take turns, so that what else the machine does meets both alike.
void roundTrips(benchmark::State& state) {
  constexpr int CYCLES_IN_TURN = 50;
  Pair coach(COACH_PROGRAM);
  Pair echo(ECHO_PROGRAM);
  for (auto _ : state) {
    if (!coach.run(CYCLES_IN_TURN) || !echo.run(CYCLES_IN_TURN))
      return state.SkipWithError("no answer");
  }
  state.counters["coach_median"] = coach.percentile(50);
  state.counters["coach_p99"] = coach.percentile(99);
  state.counters["echo_median"] = echo.percentile(50);
  state.counters["echo_p99"] = echo.percentile(99);
  state.counters["memory"] = coach.child.peakMemory();
}

/// From the order to start the program to its first datagram at the server.
void startUp(benchmark::State& state, const std::string& program) {
  for (auto _ : state) {
    Server server;
    const Clock::time_point start = Clock::now();
    const Child child(program, server.port());
    if (server.receive().empty()) return state.SkipWithError("no datagram");
    state.SetIterationTime(secondsSince(start));
    server.send("(error no_such_team)");
  }
}

}  // namespace

void addProcesses() {
  benchmark::RegisterBenchmark("think_done", roundTrips)->Iterations(20);
  benchmark::RegisterBenchmark("start_up/coach", startUp, COACH_PROGRAM)
      ->UseManualTime()
      ->Iterations(10);
  benchmark::RegisterBenchmark("start_up/echo", startUp, ECHO_PROGRAM)
      ->UseManualTime()
      ->Iterations(10);
}

}  // namespace vok::bench
