// The real coach program's command line.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>

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
  CoachProcess coach(coachArguments(server.port(), {"-l", "no/such/file"}));
  EXPECT_EQ(server.checkIn('r'), "(init Alpha (version 9.00))");
  EXPECT_EQ(server.receive(), "(eye on)");
  server.send("(hear 0 referee time_over)");
  EXPECT_EQ(coach.wait(), 0);
  EXPECT_EQ(coach.reports(), Lines());
}

TEST(CommandLine, ServersThatCannotBeAreReported) {
  CoachProcess nobody({"-h", "no-such-host.invalid", "-f", shippedConfig});
  CoachProcess portless({"-h", "127.0.0.1", "-p", "abc", "-f", shippedConfig});
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
  EXPECT_EQ(endless.reports(), Lines{"PANIC: Could not read config file: /dev/zero"});

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

}  // namespace
}  // namespace vok::test
