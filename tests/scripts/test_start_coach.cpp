// scripts/start-coach with the real coach against a scripted server.
#include <gtest/gtest.h>

#include <csignal>

#include "support/server.h"

namespace vok::test {
namespace {

constexpr const char* SCRIPT = VOK_SOURCE_DIR "/scripts/start-coach";

class StartCoach : public testing::Test {
 protected:
  CoachProcess start(const std::string& wait = "60", const std::string& host = "127.0.0.1") {
    return CoachProcess(
        {"-t", "Alpha", "-p", port, "-f", SHIPPED_CONFIG, "-w", wait, host, VOK_BIN_DIR, "12"},
        SCRIPT);
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
  CoachProcess started = start();
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
  CoachProcess started = start("1");
  // The shell's clock counts whole seconds: the first attempt may be the last.
  for (refuse(); server.receive() == init;) {
    server.send("(error no_such_team)");
    EXPECT_EQ(server.receive(), "(bye)");
  }
  EXPECT_EQ(started.wait(), 1);
  EXPECT_EQ(count(started.errors(), waiting("gave up after ")), 1U) << started.errors();
}

TEST_F(StartCoach, DoesNotTryAgainWhereTryingCannotHelp) {
  CoachProcess started = start();
  refuse("already_have_coach");
  EXPECT_EQ(started.wait(), 1);
  EXPECT_EQ(started.reports(),
            Lines{"start-coach: team Alpha has a coach already (already_have_coach)"});
  CoachProcess nowhere = start("60", "no-such-host.invalid");
  EXPECT_EQ(nowhere.wait(30000), 1);
  EXPECT_EQ(nowhere.reports()[0], "CommError: server host unknown");
}

TEST_F(StartCoach, PassesSignalsOnToTheCoachOrEndsItsWaitWithTheirStatus) {
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
    CoachProcess started = start();
    letIn();
    started.signal(number);
    EXPECT_EQ(server.receive(), "(bye)") << number;
    EXPECT_EQ(started.wait(), 0) << number;
  }
  CoachProcess unanswered = start();
  EXPECT_EQ(server.receive(), init);
  unanswered.signal(SIGTERM);
  EXPECT_EQ(unanswered.wait(1500), 128 + SIGTERM);
  EXPECT_EQ(server.receive(), "(bye)");

  CoachProcess refused = start();
  refuse();
  refused.signal(SIGTERM);
  EXPECT_EQ(refused.wait(), 128 + SIGTERM);
}

TEST_F(StartCoach, WrongArgumentsGetOneLine) {
  const std::string start = std::string(SCRIPT) + " -f " + SHIPPED_CONFIG + " ";
  const std::string place = " 127.0.0.1 " VOK_BIN_DIR;
  for (const std::string& arguments :
       Lines{"127.0.0.1", place + " 7", "-w long" + place, "-x", "127.0.0.1 /nowhere",
             "-t '(x)'" + place, "-p 99999" + place, "-f /" + place}) {
    const auto [status, output] = runCommand(start + arguments);
    EXPECT_EQ(status, 2) << arguments;
    EXPECT_EQ(count(output, "\n"), 1U) << output;
  }
}

}  // namespace
}  // namespace vok::test
