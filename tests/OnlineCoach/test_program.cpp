// The real coach program's command line and configuration.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <tuple>

#include "support/server.h"

namespace vok::test {
namespace {

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
  CoachProcess coach(coachArguments(server.port(), {"stray", "-l"}));
  EXPECT_EQ(server.checkIn('r'), "(init Alpha (version 9.00))");
  server.send("(hear 0 referee time_over)");
  EXPECT_EQ(coach.wait(), 0);
  EXPECT_EQ(coach.reports(), Lines());
}

TEST(CommandLine, ServersThatCannotBeAreReported) {
  CoachProcess nobody({"-h", "no-such-host.invalid", "-f", SHIPPED_CONFIG});
  CoachProcess portless({"-h", "127.0.0.1", "-p", "abc", "-f", SHIPPED_CONFIG});
  EXPECT_EQ(nobody.wait(30000), 0);
  EXPECT_EQ(nobody.reports(), (Lines{"CommError: server host unknown",
                                     "Onlinecoach: unspecified error when initializing !",
                                     "Onlinecoach: could not connect to sserver, closing down"}));
  EXPECT_EQ(portless.wait(), 0);
  EXPECT_EQ(portless.reports()[0], "CommError: could not send msg") << "it is port 0";
}

TEST(CommandLine, NoFileKeepsTheCoachForEver) {
  CoachProcess endless({"-f", "/dev/zero"});
  EXPECT_EQ(endless.wait(), 255);
  EXPECT_EQ(endless.reports()[0], "error parsing config file: more than 100000 lines");

  const std::string pipe = testing::TempDir() + "vok-pipe-" + std::to_string(getpid());
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  CoachProcess waiting({"-f", pipe});
  const int unwritten = open(pipe.c_str(), O_WRONLY | O_CLOEXEC);  // when the coach reads
  waiting.signal(SIGTERM);
  EXPECT_EQ(waiting.wait(1000), 0);
  EXPECT_EQ(waiting.reports(), Lines());
  close(unwritten);
  unlink(pipe.c_str());
}

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
void expectEnd(Moment moment, const std::string& key, const std::string& line,
               const Lines& reports) {
  SCOPED_TRACE(key + ": " + line);
  const ChangedConfig config(key + " =", line);
  ScriptedServer server;
  CoachProcess coach(coachArguments(server.port(), {"-f", config.path}));
  ASSERT_NO_FATAL_FAILURE(leadTo(moment, server));
  EXPECT_EQ(coach.wait(), 10);
  EXPECT_EQ(coach.reports(), reports);
  EXPECT_EQ(server.receive(0), "");
}

TEST(Configuration, AKeyThatIsMissingWrongOrTooShortEndsTheCoachWhenItAsks) {
  for (const auto& [moment, key, value, why] :
       {std::tuple(BEFORE_FIRST_DATAGRAM, "async_waitForSeeTime", "many", "not an integer."),
        {AFTER_CHECKIN, "world_maxPlayersOurTeam", "many", "not an integer."},
        {AFTER_CHECKIN, "goal_minDistToCorner", "many", "not a double."},
        {AFTER_CHECKIN, "Form0_def_PosX", "1, 2, 3, 4", "has not enough entries for No: 4."},
        {AFTER_CHECKIN, "Form2_off_Watch3", "1, 2, 3, 4, many", "not an integer."},
        {FIRST_ACT, "use_heterogenous_players", "many", "not an integer."},
        {TYPES_KNOWN, "player2_decay_inertia_delta", "many", "not a double."},
        {TYPES_KNOWN, "player11_extra_stamina_effort_weight", "many", "not a double."}}) {
    const std::string name = key;
    expectEnd(moment, name, "",
              {"WARNING: configuration entry for '" + name + "' not found.",
               "FATAL: no value for key '" + name + "' found."});
    expectEnd(moment, name, name + " = " + value,
              {"FATAL: value '" + std::string(value) + "' for key '" + name + "' " + why});
  }
}

}  // namespace
}  // namespace vok::test
