// scripts/start-coach with the real coach against a scripted server.
#include <gtest/gtest.h>

#include <csignal>
#include <filesystem>
#include <regex>
#include <tuple>

#include "support/server.h"

namespace vok::test {
namespace {

const std::string SCRIPT = VOK_SOURCE_DIR "/scripts/start-coach";

class StartCoach : public testing::Test {
 protected:
  CoachProcess start(const std::string& wait = "60", const std::string& host = "127.0.0.1") {
    return CoachProcess(
        {"-t", "Alpha", "-p", port, "-f", PLAIN_CONFIG, "-w", wait, host, VOK_BIN_DIR, "12"},
        SCRIPT);
  }
  /// False when no attempt came that could be refused.
  bool refuse(const std::string& reason = "no_such_team") {
    if (server.receive() != "(init Alpha (version 9.00))") return false;
    server.send("(error " + reason + ")");
    return server.receive() == "(bye)";
  }

  ScriptedServer server;
  const std::string port = std::to_string(server.port());
  const std::string waiting = "start-coach: the server at 127.0.0.1:" + port +
                              " has no player of team Alpha yet (no_such_team); ";
};

TEST_F(StartCoach, TriesUntilTheTeamIsThereAndSaysOnceWhatItWaitsFor) {
  CoachProcess started = start();
  EXPECT_TRUE(refuse() && refuse());
  server.checkIn();
  server.send("(hear 0 referee time_over)");
  EXPECT_EQ(started.wait(), 0);
  EXPECT_EQ(started.reports(), Lines{waiting + "trying again every second"});
}

TEST_F(StartCoach, GivesUpAfterItsTimeOrWhereTryingAgainCannotHelp) {
  for (const auto& [host, reason, line] :
       {std::tuple("127.0.0.1", "no_such_team", waiting + "gave up after "),
        {"127.0.0.1", "already_have_coach", "start-coach: team Alpha has a coach already ("},
        {"no-such-host.invalid", "", "CommError: server host unknown"}}) {
    CoachProcess started = start("1", host);
    while (refuse(reason)) continue;
    EXPECT_EQ(started.wait(30000), 1);
    EXPECT_EQ(count(started.errors(), line), 1U) << started.errors();
  }
}

TEST_F(StartCoach, PassesSignalsOnToTheCoachOrEndsItsWaitWithTheirStatus) {
  for (const int number : {SIGINT, SIGTERM, SIGHUP}) {
    CoachProcess started = start();
    server.checkIn();
    EXPECT_EQ(server.receive(), "(eye on)");
    started.signal(number);
    EXPECT_EQ(started.wait(), 0) << number;
    EXPECT_EQ(server.receive(), "(bye)") << number;
  }
  for (const bool refused : {true, false}) {
    CoachProcess outside = start();
    EXPECT_TRUE(refused ? refuse() : server.receive().starts_with("(init "));
    outside.signal(SIGTERM);
    EXPECT_EQ(outside.wait(1500), 128 + SIGTERM);
  }
}

TEST_F(StartCoach, PutsRecordingAndPageOfTheMatchIntoAFolder) {
  const std::string folder = testing::TempDir() + "reports" + port;
  CoachProcess started({"VOK_REPORTS=" + folder, SCRIPT, "-t", "Alpha", "-p", port, "-f",
                        PLAIN_CONFIG, "127.0.0.1", VOK_BIN_DIR, "12"},
                       "/usr/bin/env");
  server.checkIn();
  server.send("(hear 0 referee kick_off_l)");
  server.send(
      "(see_global 1 ((b) 0 0 0 0) ((p \"Alpha\" 1) 1 1 0 0 0 0) "
      "((p \"Be<ta\" 2) 2 2 0 0 0 0))");
  server.send("(hear 1 referee time_over)");
  EXPECT_EQ(started.wait(), 0);
  const std::string found = runCommand("ls " + folder + "; cat " + folder + "/*.html").second;
  EXPECT_EQ(std::string(14, 'N') + "-Be_ta.html",
            std::regex_replace(lines(found).at(0), std::regex("[0-9]"), "N"));
  EXPECT_TRUE(lines(found).at(1).ends_with("-Be_ta.txt"));
  EXPECT_NE(found.find("<title>Alpha 0 : 0 Be&#60;ta</title>"), std::string::npos);
  std::filesystem::remove_all(folder);
}

TEST_F(StartCoach, WrongArgumentsGetOneLine) {
  const std::string place = " host " VOK_BIN_DIR;
  // The status stands behind the one line.
  for (const std::string& arguments : Lines{"host", "host /no", place + " 7", "-w x" + place, "-x"})
    EXPECT_EQ(lines(runCommand(SCRIPT + " " + arguments + " 2>&1; echo $?").second).at(1), "2");
}

}  // namespace
}  // namespace vok::test
