// scripts/start-coach with the real coach against a scripted server.
#include <gtest/gtest.h>

#include <csignal>

#include "support/server.h"

namespace vok::test {
namespace {

class StartCoach : public testing::Test {
 protected:
  CoachProcess start(const Lines& arguments) {
    return CoachProcess(arguments, {}, VOK_SOURCE_DIR "/scripts/start-coach");
  }
  CoachProcess startRight(const std::string& wait = "60") {
    return start({"-t", "Alpha", "-p", port, "-f", SHIPPED_CONFIG, "-w", wait, "127.0.0.1",
                  VOK_BIN_DIR, "12"});
  }

  std::string waiting(const std::string& end) const {
    return "start-coach: the server at 127.0.0.1:" + port +
           " has no player of team Alpha yet (no_such_team); " + end;
  }

  void refuse(const std::string& reason = "no_such_team") {
    EXPECT_EQ(server.receive(), init);
    server.send("(error " + reason + ")");
    EXPECT_EQ(server.receive(), "(bye)");
  }

  void letIn() {
    EXPECT_EQ(server.checkIn(), init);
    EXPECT_EQ(server.receive(), "(eye on)");
  }

  const std::string init = "(init Alpha (version 9.00))";
  ScriptedServer server;
  const std::string port = std::to_string(server.port());
};

TEST_F(StartCoach, TriesUntilTheTeamIsThereAndSaysOnceWhatItWaitsFor) {
  CoachProcess started = startRight();
  refuse();
  refuse();
  letIn();
  server.send("(bogus)");
  server.send("(hear 0 referee time_over)");
  EXPECT_EQ(server.receive(), "(bye)");
  EXPECT_EQ(started.wait(), 0);
  EXPECT_EQ(started.reports(),
            (Lines{waiting("trying again every second"),
                   "CommError: 0 Comm (Alpha No.0): could not parse server string (bogus)"}));
}

TEST_F(StartCoach, GivesUpAfterItsTime) {
  CoachProcess started = startRight("1");
  // The shell's clock counts whole seconds: the first attempt may be the last.
  for (refuse(); server.receive() == init;) {
    server.send("(error no_such_team)");
    EXPECT_EQ(server.receive(), "(bye)");
  }
  EXPECT_EQ(started.wait(), 1);
  EXPECT_EQ(count(started.errors(), waiting("gave up after ")), 1U) << started.errors();
}

TEST_F(StartCoach, DoesNotTryAgainWhereTryingCannotHelp) {
  CoachProcess started = startRight();
  refuse("already_have_coach");
  EXPECT_EQ(started.wait(), 1);
  EXPECT_EQ(started.reports(),
            Lines{"start-coach: team Alpha has a coach already (already_have_coach)"});
  CoachProcess nowhere = start({"-f", SHIPPED_CONFIG, "no-such-host.invalid", VOK_BIN_DIR});
  EXPECT_EQ(nowhere.wait(30000), 1);
  EXPECT_EQ(nowhere.reports()[0], "CommError: server host unknown");
}

TEST_F(StartCoach, PassesSignalsOnToTheCoachOrEndsItsWaitWithTheirStatus) {
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
    CoachProcess started = startRight();
    letIn();
    started.signal(number);
    EXPECT_EQ(server.receive(), "(bye)") << number;
    EXPECT_EQ(started.wait(), 0) << number;
  }
  CoachProcess unanswered = startRight();
  EXPECT_EQ(server.receive(), init);
  unanswered.signal(SIGTERM);
  EXPECT_EQ(unanswered.wait(1500), 128 + SIGTERM);
  EXPECT_EQ(server.receive(), "(bye)");

  CoachProcess refused = startRight();
  refuse();
  refused.signal(SIGTERM);
  EXPECT_EQ(refused.wait(), 128 + SIGTERM);
}

TEST_F(StartCoach, WrongArgumentsGetOneLine) {
  const std::string host = "127.0.0.1";
  const std::string bin = VOK_BIN_DIR;
  for (Lines given : {Lines{host},
                      {host, bin, "7"},
                      {"-w", "long", host, bin},
                      {"-x"},
                      {host, "/nowhere"},
                      {"-t", "(x)", host, bin},
                      {"-p", "99999", host, bin},
                      {"-f", "/", host, bin}}) {
    given.insert(given.begin(), {"-f", SHIPPED_CONFIG});
    CoachProcess started = start(given);
    EXPECT_EQ(started.wait(), 2);
    EXPECT_EQ(lines(started.errors()).size(), 1U) << started.errors();
  }
}

}  // namespace
}  // namespace vok::test
