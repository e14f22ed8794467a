// scripts/start-coach with the real coach against a scripted server.
#include <gtest/gtest.h>

#include <csignal>

#include "support/server.h"

namespace vok::test {
namespace {

constexpr const char* init = "(init Alpha (version 9.00))";
constexpr const char* noTeam = "(error no_such_team)";

class StartCoach : public testing::Test {
 protected:
  Lines arguments(const std::string& wait = "60") const {
    return {"-t", "Alpha", "-p", port(), "-f", shippedConfig, "-w", wait, "127.0.0.1", VOK_BIN_DIR};
  }
  std::string port() const { return std::to_string(server.port()); }

  std::string waiting(const std::string& end) const {
    return "start-coach: the server at 127.0.0.1:" + port() +
           " has no player of team Alpha yet (no_such_team); " + end;
  }

  void refuse() {
    EXPECT_EQ(server.receive(), init);
    server.send(noTeam);
    EXPECT_EQ(server.receive(), "(bye)");
  }

  ScriptedServer server;
  const std::string script = VOK_SOURCE_DIR "/scripts/start-coach";
};

TEST_F(StartCoach, TriesUntilTheTeamIsThereAndSaysOnceWhatItWaitsFor) {
  Lines numbered = arguments();
  numbered.push_back("12");
  CoachProcess started(numbered, {}, script);
  refuse();
  refuse();
  EXPECT_EQ(server.checkIn(), init);
  EXPECT_EQ(server.receive(), "(eye on)");
  server.send("(bogus)");
  server.send("(hear 0 referee time_over)");
  EXPECT_EQ(server.receive(), "(bye)");
  EXPECT_EQ(started.wait(), 0);
  EXPECT_EQ(started.reports(),
            (Lines{waiting("trying again every second"),
                   "CommError: 0 Comm (Alpha No.0): could not parse server string (bogus)"}));
}

TEST_F(StartCoach, GivesUpAfterItsTime) {
  CoachProcess started(arguments("1"), {}, script);
  while (server.receive() == init) {
    server.send(noTeam);
    EXPECT_EQ(server.receive(), "(bye)");
  }
  EXPECT_EQ(started.wait(), 1);
  // The shell's clock ticks at whole seconds: the first attempt may be the last.
  const Lines errors = lines(started.errors());
  ASSERT_FALSE(errors.empty());
  EXPECT_TRUE(errors.back().starts_with(waiting("gave up after "))) << errors.back();
}

TEST_F(StartCoach, DoesNotTryAgainWhereTryingCannotHelp) {
  CoachProcess started(arguments(), {}, script);
  EXPECT_EQ(server.receive(), init);
  server.send("(error already_have_coach)");
  EXPECT_EQ(started.wait(), 1);
  EXPECT_EQ(started.reports(),
            Lines{"start-coach: team Alpha has a coach already (already_have_coach)"});
}

TEST_F(StartCoach, TellsWhoDidNotGetInByItsStatus) {
  CoachProcess nowhere({"-f", shippedConfig, "no-such-host.invalid", VOK_BIN_DIR}, {}, script);
  EXPECT_EQ(nowhere.wait(30000), 1);
  EXPECT_EQ(nowhere.reports()[0], "CommError: server host unknown");

  CoachProcess unanswered(arguments(), {}, script);
  EXPECT_EQ(server.receive(), init);
  unanswered.signal(SIGTERM);
  EXPECT_EQ(unanswered.wait(1500), 128 + SIGTERM);
}

TEST_F(StartCoach, PassesSignalsOnToTheCoach) {
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
    CoachProcess started(arguments(), {}, script);
    EXPECT_EQ(server.checkIn(), init);
    EXPECT_EQ(server.receive(), "(eye on)");
    started.signal(number);
    EXPECT_EQ(server.receive(1500), "(bye)") << number;
    EXPECT_EQ(started.wait(1500), 0) << number;
  }
}

TEST_F(StartCoach, ASignalEndsTheWaitForTheTeam) {
  CoachProcess started(arguments(), {}, script);
  refuse();
  started.signal(SIGTERM);
  EXPECT_EQ(started.wait(1000), 128 + SIGTERM);
}

TEST_F(StartCoach, WrongArgumentsGetOneLine) {
  const Lines wrong[] = {{"host"},
                         {"host", VOK_BIN_DIR, "7"},
                         {"-w", "long", "host", VOK_BIN_DIR},
                         {"-x"},
                         {"host", "/nowhere"},
                         {"-t", "(x)", "host", VOK_BIN_DIR},
                         {"-p", "99999", "host", VOK_BIN_DIR},
                         {"-f", "/", "host", VOK_BIN_DIR}};
  for (const Lines& given : wrong) {
    CoachProcess started(given, {}, script);
    EXPECT_EQ(started.wait(), 2);
    EXPECT_EQ(lines(started.errors()).size(), 1U) << started.errors();
  }
}

}  // namespace
}  // namespace vok::test
