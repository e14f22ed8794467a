// Every key of the configuration against the real coach program: what it does without it, and when.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>

#include "support/server.h"

namespace vok::test {
namespace {

TEST(Configuration, AnUnreadableFileEndsWithStatus255) {
  CoachProcess coach({"-f", "no/such/file"});
  EXPECT_EQ(coach.wait(), 255);
  EXPECT_EQ(coach.reports(), Lines{"PANIC: Could not read config file: no/such/file"});
}

TEST(Configuration, AnOddWaitIsReportedAndUsed) {
  const ChangedConfig config("async_waitForSeeTime", "async_waitForSeeTime = 95");
  CoachProcess coach({"-h", "no-such-host.invalid", "-f", config.path});
  EXPECT_EQ(coach.wait(30000), 0);
  EXPECT_EQ(coach.reports()[1],
            "Warning: ensure waitForSeeTime%10 == 0 && 0 <= waitForSeeTime && waitForSeeTime <= 90"
            " not valid in asyncinfo:88");
}

// When the coach asks for a key.
enum Moment { BEFORE_FIRST_DATAGRAM, AFTER_CHECKIN, FIRST_ACT, TYPES_KNOWN };

Moment momentOf(const std::string& key) {
  if (key.starts_with("async_")) return BEFORE_FIRST_DATAGRAM;
  if (key.starts_with("use_")) return FIRST_ACT;
  if (key.starts_with("player")) return TYPES_KNOWN;
  return AFTER_CHECKIN;
}

bool isWhole(const std::string& key) {
  constexpr const char* marks[] = {"async_",         "world_",          "our",     "tac_",
                                   "StartFormation", "_tact",           "_Watch",  "use_",
                                   "goal_maxAge",    "maxKickDuration", "_score_", "maxSimSteps"};
  return std::any_of(std::begin(marks), std::end(marks),
                     [&key](const char* mark) { return key.find(mark) != std::string::npos; });
}

struct Key {
  std::string name;
  bool list;
};

std::vector<Key> shippedKeys() {
  std::ifstream file(shippedConfig);
  std::vector<Key> keys;
  for (std::string line; std::getline(file, line);) {
    const std::string::size_type end = line.find(" =");
    if (line.starts_with('#') || end == std::string::npos) continue;
    keys.push_back({line.substr(0, end), line.find(',') != std::string::npos});
  }
  return keys;
}

void sendCycle(ScriptedServer& server, long time, const std::string& call) {
  server.send("(hear " + std::to_string(time) + " referee " + call + ")");
  server.send(view(time));
  server.send("(think)");
}

// Takes the match to a moment; the coach must be alive and well up to there.
void leadTo(Moment moment, ScriptedServer& server) {
  if (moment == BEFORE_FIRST_DATAGRAM) return;
  ASSERT_EQ(server.checkIn(), "(init Alpha (version 9.00))");
  ASSERT_EQ(server.receive(), "(eye on)");
  if (moment == AFTER_CHECKIN) return;
  sendCycle(server, 1, "play_on");
  ASSERT_EQ(server.receive(), "(done)");
  if (moment == FIRST_ACT) return sendCycle(server, 2, "drop_ball");
  for (int id = 0; id < 6; ++id) server.send(playerType(id));
  sendCycle(server, 2, "drop_ball");
  ASSERT_EQ(server.receive(), "(done)");
  server.send(playerType(6));
  sendCycle(server, 3, "drop_ball");
}

// The coach must go down at the key's moment, with these lines and without another word.
void expectEnd(const std::string& key, const std::string& line, const Lines& reports) {
  SCOPED_TRACE(key + ": " + line);
  const ChangedConfig config(key + " =", line);
  ScriptedServer server;
  CoachProcess coach(coachArguments(server.port(), {"-f", config.path}));
  ASSERT_NO_FATAL_FAILURE(leadTo(momentOf(key), server));
  EXPECT_EQ(coach.wait(), 10);
  EXPECT_EQ(coach.reports(), reports);
  EXPECT_EQ(server.receive(0), "");
}

// All keys in shares that can run side by side.
constexpr std::size_t SHARES = 6;

class EveryKey : public testing::TestWithParam<std::size_t> {};

TEST_P(EveryKey, EndsTheCoachWhenItIsMissingOrItsValueWrongOrTooShort) {
  const std::vector<Key> keys = shippedKeys();
  ASSERT_GE(keys.size(), 180U);
  for (std::size_t i = GetParam(); i < keys.size() && !HasFailure(); i += SHARES) {
    const auto& [key, list] = keys[i];
    const auto refuse = [&key = key](const std::string& value, const std::string& why) {
      expectEnd(key, key + " = " + value, {"FATAL: value '" + value + "' for key '" + key + why});
    };
    expectEnd(key, "",
              {"WARNING: configuration entry for '" + key + "' not found.",
               "FATAL: no value for key '" + key + "' found."});
    refuse(list ? "1, 2, 3, 4, many" : "many",
           isWhole(key) ? "' not an integer." : "' not a double.");
    if (list) refuse("1, 2, 3, 4", "' has not enough entries for No: 4.");
  }
}

INSTANTIATE_TEST_SUITE_P(Configuration, EveryKey, testing::Range(std::size_t{0}, SHARES));

}  // namespace
}  // namespace vok::test
