// The real coach program while its calls of the system fail: it plays the match to its end or says
// why it does not, and it neither crashes nor hangs.
#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <map>

#include "support/server.h"

namespace vok::test {
namespace {

constexpr int CYCLES = 200;
constexpr int CUT = 0;  // no error: the call moves half of the bytes

/// A coach and its server.
struct Match {
  explicit Match(int errorFile = newFile())
      : coach(coachArguments(server.port()), VOK_BIN_DIR "/onlinecoach", errorFile) {}

  /// Whether the coach answers every cycle and leaves in order.
  bool play() {
    for (int waits = 0; waits < 5 && command().empty();) ++waits;
    for (const char* text : {"(init l ok)", SERVER_PARAM, PLAYER_PARAM}) server.send(text);
    bool isPlayed = command() == "(eye on)";
    for (int cycle = 1; isPlayed && cycle <= CYCLES; ++cycle) {
      if (cycle == 20) sayAsAStranger();
      if (cycle == 90) server.send("(hear 90 referee kick_in_l)");
      server.send(view(cycle, cycle % 40));
      server.send("(think)");
      isPlayed = command() == "(done)";
    }
    server.send("(hear 200 referee time_over)");
    return command() == "(bye)" && isPlayed;
  }

  void sayAsAStranger() {
    ScriptedServer stranger(2);
    stranger.address(server);
    stranger.send("(hear 1 referee time_over)");
  }

  /// The coach's next command but for messages and type changes; "" when none comes in time.
  std::string command() {
    for (int tries = 0; tries < 400; ++tries) {
      const bool hasEnded = coach.hasEnded();
      std::string text = server.answer(5);
      if (!text.empty() || hasEnded) return text;
    }
    return "";
  }

  ScriptedServer server;
  CoachProcess coach;
};

struct Outcome {
  bool isPlayed = false;
  int status = 0;
  Lines reports;
};

/// Plays while the Nth call fails, and below 0 all from the Nth on; 0 only counts the calls.
Outcome playWith(const std::string& call, long number, int error) {
  const std::string failing = call + " " + std::to_string(number) + " " + std::to_string(error);
  setenv("VOK_FAIL_CALL", failing.c_str(), 1);
  setenv("LD_PRELOAD", VOK_FAILCALLS, 1);
  setenv("ASAN_OPTIONS", "verify_asan_link_order=0", 0);
  Match match;
  unsetenv("LD_PRELOAD");
  const bool isPlayed = match.play();
  const int status = match.coach.wait();
  return {isPlayed, status, lines(match.coach.errors())};
}

struct Call {
  std::string name;
  std::vector<int> errors;
  int status = 0;         ///< of a coach that ends since this call has failed
  bool isNeeded = false;  ///< a single failure ends the coach
};
void PrintTo(const Call& call, std::ostream* out) {
  *out << call.name;
}

const Call CALLS[] = {
    {"fopen", {EINTR, EMFILE, ENFILE, ENOMEM, EACCES}, 255, true},
    {"read", {EINTR, EAGAIN, EIO, ENOMEM, EBADF}, 255, true},
    {"socket", {EMFILE, ENFILE, ENOBUFS, ENOMEM, EPERM}, 0, true},
    {"gethostbyname", {EINTR, EAGAIN, EMFILE}, 0, true},
    {"bind", {EADDRINUSE, ENOBUFS, ENOMEM, EPERM}, 0, true},
    {"sendto", {EAGAIN, ENOBUFS, ENOMEM, EPERM, ENETUNREACH, ECONNREFUSED, EIO, EBADF, EINTR, CUT}},
    {"recvfrom", {ENOBUFS, ENOMEM, EAGAIN, ECONNREFUSED, EIO, EBADF, EINTR}},
    {"ppoll", {EINTR, EAGAIN, ENOMEM, EINVAL, EBADF}},
    {"poll", {EINTR, EAGAIN, ENOMEM}},
    {"write", {CUT, EAGAIN, EIO, ENOSPC, EPIPE, EBADF, EINTR}},
    {"setsockopt", {ENOMEM, EPERM, EINVAL}},
    {"getsockopt", {ENOBUFS, ENOPROTOOPT, EINVAL}},
    // A time that no longer runs, or ran backwards, looks like a server's silence.
    {"clock_gettime", {EINVAL}, 0, true},
};

class FailedCalls : public testing::TestWithParam<Call> {
 protected:
  void fail(long number, int error) {
    const Call& call = GetParam();
    SCOPED_TRACE(call.name + " " + std::to_string(number) + ": " + std::strerror(error));
    const auto [isPlayed, status, reports] = playWith(call.name, number, error);
    const std::string all = testing::PrintToString(reports);
    const bool isTold = std::any_of(reports.begin(), reports.end(), [this](const auto& line) {
      return std::find(usual_.begin(), usual_.end(), line) == usual_.end();
    });
    EXPECT_EQ(status, isPlayed ? 0 : call.status) << all;
    EXPECT_TRUE(isPlayed || isTold) << all;
    EXPECT_TRUE(isPlayed || call.isNeeded || number < 0 || error == CUT) << all;
    const std::size_t lost = call.name == "write" && error != EINTR && error != CUT ? 1 : 0;
    EXPECT_TRUE(!isPlayed || number < 0 || reports.size() + lost >= usual_.size()) << all;
    ++outcomes_[std::string(number > 0 ? "one fails, " : "all from one on fail, ") +
                (isPlayed ? "played on" : "ended with a line")];
  }

  /// Counts the calls of a match without a failure.
  long count() {
    const Outcome whole = playWith(GetParam().name, 0, 0);
    EXPECT_TRUE(whole.isPlayed);
    usual_ = whole.reports;
    const long calls = std::stol(usual_.back());
    usual_.pop_back();
    EXPECT_GT(calls, 0);
    return calls;
  }

  Lines usual_;  ///< the lines of a match without a failure
  std::map<std::string, int> outcomes_;
};

// Each error with one call, further behind with every error; with VOK_FAIL_EVERY_CALL each with
// every call.
TEST_P(FailedCalls, AreSurvivedOrTold) {
  const bool every = std::getenv("VOK_FAIL_EVERY_CALL") != nullptr;
  const std::vector<int>& errors = GetParam().errors;
  const long calls = count();
  for (std::size_t i = 0; i < errors.size(); ++i) {
    const long some = 1 + (calls - 1) * long(i) / std::max(long(errors.size()) - 1, 1L);
    for (long n = every ? 1 : some; n <= (every ? calls : some); ++n) {
      fail(n, errors[i]);
      // Nobody sends signals without end.
      if ((every ? n % 20 == 1 : i == 1) && errors[i] != EINTR) fail(-n, errors[i]);
    }
  }
  std::cout << calls << " calls, " << errors.size() << " errors\n";
  for (const auto& [what, runs] : outcomes_) std::cout << "  " << what << ": " << runs << "\n";
}

INSTANTIATE_TEST_SUITE_P(Of, FailedCalls, testing::ValuesIn(CALLS),
                         [](const auto& test) { return test.param.name; });

TEST(StandardError, ThatTakesNothingIsDoneWithout) {
  int pipe[2];
  ASSERT_EQ(pipe2(pipe, O_CLOEXEC), 0);
  const std::string filling(static_cast<std::size_t>(fcntl(pipe[1], F_SETPIPE_SZ, 4096)), 'x');
  ASSERT_EQ(write(pipe[1], filling.data(), filling.size()), 4096);
  for (const int error : {pipe[1], open("/dev/full", O_WRONLY), open("/dev/null", O_RDONLY)}) {
    Match match(error);
    EXPECT_TRUE(match.play());
    EXPECT_EQ(match.coach.wait(), 0);
  }
  close(pipe[0]);
}

}  // namespace
}  // namespace vok::test
