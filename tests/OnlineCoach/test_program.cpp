// The real coach program against a scripted server.
#include <gtest/gtest.h>
#include <unistd.h>

#include <csignal>

#include "support/server.h"

namespace vok::test {
namespace {

constexpr const char* closing = "Onlinecoach: could not connect to sserver, closing down";

// Ends the match and sees the coach off.
void endMatch(ScriptedServer& server, CoachProcess& coach, long time) {
  server.send("(hear " + std::to_string(time) + " referee time_over)");
  server.send(view(time));
  server.send("(think)");
  // The call alone ends the match: the last cycle may be answered or not.
  std::string last = server.answer();
  if (last.starts_with("(done)")) last = server.answer();
  EXPECT_EQ(last, "(bye)");
  EXPECT_EQ(coach.wait(), 0);
}

TEST(Program, ChecksInOnEitherSideAndLeavesAtTimeOver) {
  for (const char side : {'l', 'r'}) {
    ScriptedServer server;
    CoachProcess coach(coachArguments(server.port()));
    EXPECT_EQ(server.checkIn(side), "(init Alpha (version 9.00))");
    EXPECT_EQ(server.receive(), "(eye on)");
    endMatch(server, coach, 1);
    EXPECT_EQ(coach.reports(), Lines());
  }
}

struct FailedCheckin {
  const char* name;
  Lines answers;
  Lines reports;
};

void PrintTo(const FailedCheckin& tested, std::ostream* out) {
  *out << tested.name;
}

class FailingCheckin : public testing::TestWithParam<FailedCheckin> {};

TEST_P(FailingCheckin, IsReportedAndEndsInOrder) {
  ScriptedServer server;
  CoachProcess coach(coachArguments(server.port()));
  EXPECT_EQ(server.receive(), "(init Alpha (version 9.00))");
  for (const std::string& text : GetParam().answers) server.send(text);
  EXPECT_EQ(coach.wait(), 0);
  EXPECT_EQ(coach.reports(), GetParam().reports);
}

INSTANTIATE_TEST_SUITE_P(
    Program, FailingCheckin,
    testing::Values(
        FailedCheckin{"UnknownSide",
                      {"(init x ok)"},
                      {"CommError: Comm (Alpha No.-1): cannot handle server checkin response "
                       "(init x ok)",
                       "Onlinecoach: could not parse init response !", closing}},
        FailedCheckin{"Refusal",
                      {"(error no_such_team)"},
                      {"CommError: Comm (Alpha No.-1): cannot handle server checkin response "
                       "(error no_such_team)",
                       "Onlinecoach: could not parse init response !", closing}},
        FailedCheckin{"NoServerParam",
                      {"(init l ok)", "(bogus)"},
                      {"CommError: Comm (Alpha No.0): cannot parse server_param (bogus)",
                       "Onlinecoach: could not deliver checkin message to server !", closing}},
        FailedCheckin{"NoPlayerParam",
                      {"(init l ok)", serverParam, "(bogus)"},
                      {"CommError: Comm (Alpha No.0): cannot parse player_param (bogus)",
                       "Onlinecoach: could not deliver checkin message to server !", closing}},
        FailedCheckin{"Silence",
                      {},
                      {"CommError: select timed out",
                       "Onlinecoach: did not receive response from server !", closing}}),
    [](const auto& tested) { return tested.param.name; });

TEST(Program, TakesTheTwoParameterMessagesInEitherOrder) {
  ScriptedServer server;
  CoachProcess coach(coachArguments(server.port()));
  server.receive();
  for (const char* text : {"(init l ok)", playerParam, serverParam}) server.send(text);
  EXPECT_EQ(server.receive(), "(eye on)");
  endMatch(server, coach, 1);
  EXPECT_EQ(coach.reports(),
            (Lines{"CommError: Comm (Alpha No.0): got player_param instead of server_param",
                   "CommError: Comm (Alpha No.0): got server_param instead of player_param"}));
}

TEST(Program, AnUnknownHostIsReported) {
  CoachProcess coach({"-h", "no-such-host.invalid", "-f", shippedConfig});
  EXPECT_EQ(coach.wait(30000), 0);
  EXPECT_EQ(coach.reports(),
            (Lines{"CommError: server host unknown",
                   "Onlinecoach: unspecified error when initializing !", closing}));
}

TEST(Program, AnswersEveryThinkInEitherOrderWithTheView) {
  ScriptedServer server;
  CoachProcess coach(coachArguments(server.port()));
  server.checkIn();
  EXPECT_EQ(server.receive(), "(eye on)");
  const Lines traffic[] = {
      {view(0), "(think)"},  // the clock stands still before the kick-off
      {"(hear 0 referee kick_off_l)", view(0), "(think)"},  // and still does when it is called
      {view(1), "(think)"},
      {"(think)", view(2)},
      {"(hear 3 referee foul_charge_l)", view(3), "(think)"},
      {view(3), "(think)"},  // and here, although the play mode does not tell
      {"(think)", view(3)},
      {view(4), "(think)"},
  };
  for (const Lines& cycle : traffic) {
    EXPECT_EQ(server.answer(20), "") << "an answer before " << cycle[0];
    for (const std::string& text : cycle) server.send(text);
    EXPECT_EQ(server.answer(), "(done)") << "after " << cycle[0];
  }
  endMatch(server, coach, 5);
  EXPECT_EQ(coach.reports(), Lines());
}

TEST(Program, ASilentServerIsTakenForDead) {
  ScriptedServer server;
  CoachProcess coach(coachArguments(server.port()));
  server.checkIn('l', "(server_param (simulator_step 10)(synch_mode 0))");
  server.send(view(0));
  EXPECT_EQ(coach.wait(), 0);
  EXPECT_EQ(coach.reports(),
            Lines{"CommError:  (Alpha No. 0) select timed out assuming server is dead"});
  EXPECT_EQ(server.receive(), "(eye on)");
  EXPECT_EQ(server.receive(0), "") << "nobody says good-bye to the dead";
}

TEST(Program, UnreadableTextsAreReportedAndTheMatchGoesOn) {
  ScriptedServer server;
  CoachProcess coach(coachArguments(server.port()));
  server.checkIn();
  EXPECT_EQ(server.receive(), "(eye on)");
  for (const char* text : {"(bogus)", "(error unknown_command)", "(see 12)"}) server.send(text);
  server.sendBytes("");
  server.send("(warning message_not_null_terminated)");
  server.send(view(1));
  server.send("(think)");
  // From the warning on every text carries its NUL byte.
  EXPECT_EQ(server.answer(), "(done)$");
  coach.signal(SIGTERM);
  EXPECT_EQ(server.answer(), "(bye)$");
  EXPECT_EQ(coach.wait(), 0);
  EXPECT_EQ(
      coach.reports(),
      (Lines{"CommError: 0 Comm (Alpha No.0): could not parse server string (bogus)",
             "CommError: 0 Comm (Alpha No.0): received error message from server: "
             "(error unknown_command)",
             "12 AsyncInfo (Alpha No.0): completely missed server timesteps from 1 to 11 "
             "(no commands sent)",
             "CommError: 12 Comm (Alpha No.0): received strange message from server: (see 12)",
             "CommError: 12 Comm (Alpha No.0): could not parse server string ",
             "CommError: 12 Comm (Alpha No.0): received warning message from server: "
             "(warning message_not_null_terminated)"}));
}

TEST(Program, ASignalEndsItWithinASecond) {
  for (const int number : {SIGINT, SIGTERM}) {
    ScriptedServer server;
    CoachProcess coach(coachArguments(server.port()));
    server.checkIn();
    EXPECT_EQ(server.receive(), "(eye on)");
    coach.signal(number);
    EXPECT_EQ(server.receive(1000), "(bye)");
    EXPECT_EQ(coach.wait(1000), 0);
    EXPECT_EQ(coach.reports(), Lines());
  }
}

TEST(Program, ASignalEndsTheCheckin) {
  ScriptedServer server;
  CoachProcess coach(coachArguments(server.port()));
  EXPECT_EQ(server.receive(), "(init Alpha (version 9.00))");
  coach.signal(SIGTERM);
  EXPECT_EQ(server.receive(1500), "(bye)");
  EXPECT_EQ(coach.wait(500), 0);
}

TEST(Program, AlarmsFromOutsideChangeNothing) {
  ScriptedServer server;
  CoachProcess coach(coachArguments(server.port()));
  EXPECT_EQ(server.receive(), "(init Alpha (version 9.00))");
  coach.signal(SIGALRM);
  for (const char* text : {"(init l ok)", serverParam, playerParam}) server.send(text);
  EXPECT_EQ(server.receive(), "(eye on)");
  coach.signal(SIGALRM);
  server.send(view(1));
  coach.signal(SIGALRM);
  server.send("(think)");
  EXPECT_EQ(server.answer(), "(done)");
  endMatch(server, coach, 2);
  EXPECT_EQ(coach.reports(), Lines());
}

TEST(CommandLine, MistakesGetTheUsageAndStatus1) {
  const std::string program = VOK_BIN_DIR "/onlinecoach";
  const std::string usage =
      "Usage: " + program +
      "[-t TEAMNAME] [-h HOSTNAME][-p PORTNO] [-l FILENAME] [-f FILENAME]\n"
      " -l  FILENAME  alternative configuration file for tactics (default trace.conf)\n"
      " -F  enable ZELTRA mode\n"
      " -f  FILENAME  alternative configuration file for tactics (default agent.conf)\n"
      "\n";
  for (const Lines& arguments : {Lines{"-x"}, Lines{"-t"}, Lines{"-t", "A", "-p"}}) {
    CoachProcess coach(arguments);
    EXPECT_EQ(coach.wait(), 1);
    EXPECT_TRUE(coach.errors().ends_with(usage)) << coach.errors();
  }
}

TEST(CommandLine, TraceFileAndStrayWordsAreIgnored) {
  ScriptedServer server;
  Lines arguments = coachArguments(server.port());
  arguments.insert(arguments.begin(), {"-l", "no/such/file"});
  CoachProcess coach(arguments);
  EXPECT_EQ(server.checkIn(), "(init Alpha (version 9.00))");
  EXPECT_EQ(server.receive(), "(eye on)");
  endMatch(server, coach, 1);
}

TEST(CommandLine, APortThatIsNoNumberIsPort0) {
  CoachProcess coach({"-h", "127.0.0.1", "-p", "abc", "-f", shippedConfig});
  EXPECT_EQ(coach.wait(), 0);
  EXPECT_EQ(coach.reports()[0], "CommError: could not send msg");
}

}  // namespace
}  // namespace vok::test
