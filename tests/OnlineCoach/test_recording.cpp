// What the coach records of its match, whatever becomes of the match and of the file.
#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>

#include <csignal>
#include <filesystem>

#include "matchrecorder.h"
#include "recording.h"
#include "recordline.h"
#include "support/coach.h"

namespace vok::test {
namespace {

namespace fs = std::filesystem;

/// A name of its own for each test process; the file is removed at the end.
struct RecordFile : Unique {
  ~RecordFile() { fs::remove(path); }
  /// The texts with their directions. Times only grow.
  Lines texts() const {
    std::ifstream file(path, std::ios::binary);
    Lines all;
    RecordLine read;
    double last = 0;
    for (std::string line; std::getline(file, line); last = read.milliseconds) {
      EXPECT_TRUE(read.read(line) && read.direction != '\0' && read.milliseconds >= last) << line;
      all.push_back(read.direction + std::string(read.text));
    }
    return all;
  }

  const std::string path = testing::TempDir() + "vok-record-" + std::to_string(getpid());
};

TEST(MatchRecorder, KeepsEveryTextAsItWasInALineOfItsOwn) {
  const RecordFile file;
  std::string bytes;
  for (int c = 1; c < 256; ++c) bytes += static_cast<char>(c);
  const Lines kinds = {bytes, "", "\\x41 \\ \\x4", "\t>\t", std::string(8000, '\n')};
  Lines expected;
  {
    MatchRecorder recorder(file.path);
    recorder.sent("(init)");
    expected.emplace_back(">(init)");
    recorder.start();
    // Until they have gone round the recorder's memory.
    for (std::size_t total = 0; total < 5'000'000;) {
      for (int i = 0; i < 300'000; i += 8500) {
        for (const std::string& text : kinds) {
          recorder.received(text);
          expected.push_back('<' + text);
        }
        total += 32'000;  // at least
      }
      for (int tries = 0; tries < 500 && fs::file_size(file.path) < total; ++tries) usleep(10'000);
    }
  }
  EXPECT_TRUE(file.texts() == expected);
}

TEST(MatchRecorder, SaysOnceWhyItEndsAndHoldsNobodyUp) {
  const RecordFile pipe;
  ASSERT_EQ(mkfifo(pipe.path.c_str(), 0600), 0);
  const std::string unread = "Recording: " + pipe.path + ": ";
  const std::string end = "; nothing more is recorded\n";
  for (const auto& [name, told] :
       {std::pair(std::string("/dev/full"), "Recording: /dev/full: No space left on device" + end),
        {"/no/%%t\n", "Recording: /no/%"},
        {pipe.path, unread + "No such device or address" + end}}) {
    StderrCapture errors;
    {
      MatchRecorder recorder(name);
      recorder.start();
      for (int i = 0; i < 3; ++i, usleep(150'000)) recorder.received("(think)");
    }
    const std::string lines = errors.take();
    EXPECT_TRUE(lines.starts_with(told)) << lines;
    EXPECT_EQ(count(lines, "\n"), 1U) << lines;
  }
  const int reader = open(pipe.path.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC);
  StderrCapture errors;
  {
    MatchRecorder recorder(pipe.path);
    recorder.start();
    for (int i = 0; i < 300; ++i) recorder.sent(std::string(8000, 'x'));
  }
  close(reader);
  const std::string lines = errors.take();
  EXPECT_TRUE(lines.starts_with(unread + "Resource temporarily unavailable" + end)) << lines;
  EXPECT_EQ(count(lines, " lacks "), 1U) << lines;
}

// In a match of two cycles; the fatal error is a key that the coach asks for in the second one.
TEST(CoachRecords, AllThatItReceivedAndSentInEveryEnding) {
  for (const std::string ending : {"time over", "signal", "silence", "fatal error", "killed"}) {
    SCOPED_TRACE(ending);
    const std::string begin = testing::TempDir() + "vok-" + std::to_string(getpid()) + "-match.";
    const ChangedConfig config("record_file", "record_file = " + begin + "%t.txt # here");
    if (ending == "fatal error")
      runCommand("sed -i '/^use_het/d; s/^say_.*/say_messages = 0/' " + config.path);
    const std::string hasty = "(server_param (simulator_step 10)(synch_mode 1))";
    ScriptedServer server;
    CoachProcess coach(coachArguments(server.port(), {"-f", config.path}));
    Lines expected = {'>' + server.checkIn('l', hasty), "<(init l ok)", '>' + server.receive(),
                      '<' + hasty, '<' + std::string(PLAYER_PARAM)};
    const auto play = [&](const std::string& text, bool answered) {
      server.send(text);
      expected.push_back('<' + text);
      if (answered) expected.push_back('>' + server.answer());
    };
    play("(hear 1 referee play_on)", false);
    play(view(1), false);
    play("(think)", true);
    if (ending == "time over") play("(hear 1 referee time_over)", false);
    if (ending == "signal") coach.signal(SIGTERM);
    if (ending == "fatal error") {
      play("(hear 2 referee kick_in_l)", false);
      play(view(2), false);
    }
    if (ending == "killed") {
      usleep(1'000'000);
      coach.signal(SIGKILL);
    }
    coach.wait();
    if (ending == "time over" || ending == "signal") expected.emplace_back(">(bye)");
    std::string found;
    for (const auto& entry : fs::directory_iterator(testing::TempDir()))
      if (entry.path().string().starts_with(begin)) found = entry.path();
    EXPECT_EQ(found.size(), begin.size() + 18) << found;
    RecordFile file;
    fs::rename(found, file.path);
    EXPECT_EQ(file.texts(), expected);
    tools::Recording read;
    std::string error;
    EXPECT_TRUE(tools::readFile(file.path, read, error) && read.synchronous()) << error;
  }
}

}  // namespace
}  // namespace vok::test
