// The real coach program's command line and configuration.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>
#include <iostream>
#include <tuple>

#include "support/coach.h"

namespace vok::test {
namespace {

TEST(CommandLine, MistakesGetTheUsageAndStatus1) {
  const std::string usage =
      "onlinecoach[-t TEAMNAME] [-h HOSTNAME][-p PORTNO] [-l FILENAME] [-f FILENAME]\n"
      " -l  FILENAME  alternative configuration file for tactics (default trace.conf)\n"
      " -F  enable ZELTRA mode\n"
      " -f  FILENAME  alternative configuration file for tactics (default agent.conf)\n"
      "\n";
  CoachProcess coach({"-t", "A", "-p"});
  EXPECT_EQ(coach.wait(), 1);
  EXPECT_TRUE(coach.errors().ends_with("Usage: " VOK_BIN_DIR "/" + usage)) << coach.errors();
}

TEST(CommandLine, TraceFileAndStrayWordsAreIgnored) {
  ScriptedServer server;
  CoachProcess coach(coachArguments(server.port(), {"stray", "-l"}));
  EXPECT_EQ(server.checkIn('r'), "(init Alpha (version 9.00))");
  server.send("(hear 0 referee time_over)");
  EXPECT_EQ(coach.wait(), 0);
  EXPECT_EQ(coach.reports(), Lines());
}

TEST(CommandLine, ServersThatCannotBeAndAnOddWaitAreReported) {
  const ChangedConfig config("async_waitForSeeTime", "async_waitForSeeTime = 95");
  CoachProcess coach({"-h", "no-such-host.invalid", "-f", config.path});
  CoachProcess portless({"-h", "127.0.0.1", "-p", "abc", "-f", SHIPPED_CONFIG});
  EXPECT_EQ(coach.wait(30000), 0);
  EXPECT_EQ(coach.reports(),
            (Lines{"CommError: server host unknown",
                   "Warning: ensure waitForSeeTime%10 == 0 && 0 <= waitForSeeTime && waitForSeeTime"
                   " <= 90 not valid in asyncinfo:88",
                   "Onlinecoach: unspecified error when initializing !",
                   "Onlinecoach: could not connect to sserver, closing down"}));
  EXPECT_EQ(portless.wait(), 0);
  EXPECT_EQ(portless.reports()[0], "CommError: could not send msg") << "it is port 0";
}

TEST(Configuration, NoFileKeepsTheCoachForEver) {
  CoachProcess coach({"-f", "no/such/file"});
  EXPECT_EQ(coach.wait(), 255);
  EXPECT_EQ(coach.reports(), Lines{"PANIC: Could not read config file: no/such/file"});
  CoachProcess endless({"-f", "/dev/zero"});
  EXPECT_EQ(endless.wait(), 255);
  EXPECT_EQ(endless.reports()[0], "error parsing config file: more than 100000 lines");

  const std::string pipe = testing::TempDir() + "vok-pipe-" + std::to_string(getpid());
  ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
  CoachProcess waiting({"-f", pipe});
  const int unwritten = open(pipe.c_str(), O_WRONLY | O_CLOEXEC);  // when the coach reads
  waiting.signal(SIGTERM);
  EXPECT_EQ(waiting.wait(1000), 0);
  close(unwritten);
  unlink(pipe.c_str());
}

/// A coach's life without a socket: the check-in, a cycle, the player types, and another cycle.
/// What it sends stands on standard error, too.
void live(const std::string& config) {
  TextServer server({"(init l ok)", SERVER_PARAM, PLAYER_PARAM});
  VokCoach coach("Alpha", server, config.c_str());
  Lines texts = {view(1), "(think)"};
  for (int id = 0; id < 7; ++id) texts.push_back(playerType(id));
  texts.insert(texts.end(), {view(2), "(think)"});
  for (const std::string& text : texts) {
    coach.comm->receiveText(text.c_str());
    coach.step();
    std::cerr << server.sent();
  }
}

TEST(Configuration, AMissingKeyEndsTheCoachWhenItAsks) {
  for (const auto& [sent, key] : {std::pair("", "async_waitForSeeTime"),
                                  {"", "Form2_off_Watch3"},
                                  {".*eye on\\)", "use_heterogenous_players"},
                                  {".*done\\)", "player2_decay_inertia_delta"}}) {
    const std::string name = key;
    const ChangedConfig config(name + " =", "");
    EXPECT_EXIT(live(config.path), testing::ExitedWithCode(10),
                std::string("^") + sent + "WARNING: configuration entry for '" + name +
                    "' not found.\nFATAL: no value for key '" + name + "' found.\n$");
  }
}

// A match of six cycles of which two are lost. It has one message, six requests for types, of which
// two are given, and two datagrams of a stranger; one view comes 30 ms behind its "(think)".
TEST(Summary, HasTheFiguresOfTheMatchInEveryEnding) {
  const std::string realTime = "(server_param (synch_mode 0)(say_coach_cnt_max 100))";
  const std::string hasty = "(server_param (synch_mode 1)(simulator_step 10))";
  for (const auto& [parameters, ending, left] :
       {std::tuple(std::string(SERVER_PARAM), "time over", 127),
        {SERVER_PARAM, "signal", 127},
        {hasty, "silence", 127},
        {realTime, "time over", 99}}) {
    SCOPED_TRACE(ending + parameters);
    const bool synchronous = parameters != realTime;
    ScriptedServer server;
    ScriptedServer stranger(2);
    CoachProcess coach(coachArguments(server.port(), {"-f", SHIPPED_CONFIG}));
    server.checkIn('l', parameters);
    EXPECT_EQ(server.receive(), "(eye on)");
    stranger.address(server);
    for (int i = 0; i < 2; ++i) stranger.send("(hear 1 referee time_over)");
    const auto play = [&](long time, int requests = 0, useconds_t delay = 0) {
      if (delay == 0) server.send(view(time));
      if (synchronous) server.send("(think)");
      usleep(delay);
      if (delay > 0) server.send(view(time));
      for (int i = 0; i < requests; ++i) {
        const std::string request = server.receive();
        EXPECT_TRUE(request.starts_with("(change_player_type ")) << request;
        server.send(i < 2 ? "(ok " + request.substr(1) : "(warning no_subs_left)");
      }
      EXPECT_EQ(synchronous ? server.answer() : "(done)", "(done)");
    };

    for (int id = 0; id < 7; ++id) server.send(playerType(id));
    play(0, 6);
    play(1);
    server.send("(hear 2 referee kick_in_l)");
    play(2);
    play(3, 0, 30'000);
    play(6);
    if (ending == std::string("signal")) coach.signal(SIGTERM);
    if (ending == std::string("time over")) server.send("(hear 6 referee time_over)");
    EXPECT_EQ(coach.wait(), 0);

    const Lines reports = coach.reports();
    const std::string line = reports[reports.size() - 2];
    const std::string figures =
        "Coach: summary: 4 cycles followed, 2 missed; 1 messages said, " + std::to_string(left) +
        " left; our types: 6 asked, 2 given, 4 refused; opponents' types: 0 of 11 known; 2 "
        "datagrams from other addresses dropped";
    const std::string time = "; longest time from \"(think)\" to \"(done)\": ";
    EXPECT_EQ(line.substr(0, line.find(time)), figures);
    EXPECT_EQ(count(line, time), synchronous ? 1U : 0U) << line;
    if (!synchronous) continue;
    const std::string longest = line.substr(line.find(time) + time.size());
    EXPECT_TRUE(longest.ends_with(" ms")) << longest;
    // 30 ms pass between the two texts; the coach may be late for the first one.
    EXPECT_GE(std::stod(longest), 15);
    EXPECT_LT(std::stod(longest), 3000);
  }
}

}  // namespace
}  // namespace vok::test
