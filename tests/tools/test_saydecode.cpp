#include <gtest/gtest.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <random>

#include "audiomgr.h"
#include "coachmessage.h"
#include "support/server.h"

namespace vok::test {
namespace {

/// Runs the program with arguments for the shell: its status, and what it wrote on both streams.
std::pair<int, std::string> saydecode(const std::string& arguments, const std::string& input) {
  // A file of this process alone: tests run side by side.
  const std::string file = testing::TempDir() + "saydecode" + std::to_string(getpid());
  std::ofstream(file, std::ios::binary) << input;
  auto result = runCommand(VOK_BIN_DIR "/saydecode " + arguments + " <" + file);
  std::remove(file.c_str());
  return result;
}

/// A coach's message with the ball at (6.25, -18.4), cut to what travels: (6.2, -18.4).
std::string coachText(unsigned time = 2345) {
  CoachMessage told;
  told.ball = {6.25, -18.4};
  told.kicker = 9;
  AudioMsg msg(0, time, true);
  told.write(msg);
  AudioMgr(0, false, "vok", 1).SpeakTo(msg);
  return msg.getEncoding();
}

std::string playerText() {
  AudioMsg msg(7, 99, false);
  AudioMgr(3, true, "vok", 1).SpeakTo(msg);
  return msg.getEncoding();
}

// What it prints and draws of a message is compared with the page in docs/.
TEST(Saydecode, FindsMessagesWhereverTheyStandAndSurvivesAnyBytes) {
  const std::string text = coachText();
  std::mt19937 random(5);
  std::string noise;
  for (int i = 0; i < 90000; ++i)
    noise += i < 70000 ? msgEncodeChars[random() % 64] : static_cast<char>(random());
  const std::pair<std::string, std::size_t> inputs[] = {
      {"2345,0\tRecv Alpha_Coach: (say (freeform \"" + text + "\"))\n", 1},
      {"(hear 9 self \"" + playerText() + "\")\r\n\n" + text + " " + text + "\n", 3},
      {text + coachText(6) + "xx", 2},
      {noise + "\n" + text, 1},
      {text.substr(0, 125), 0},
      {"", 0},
  };
  for (const auto& [input, messages] : inputs) {
    const auto [status, output] = saydecode("", input);
    EXPECT_EQ(status, messages == 0 ? 1 : 0);
    EXPECT_EQ(count(output, "checksum     holds\n"), messages) << output;
    EXPECT_EQ(output == "saydecode: no message found\n", messages == 0);
  }
}

TEST(Saydecode, ADamagedMessageIsToldAndNotReadAndAPlayersHasOnlyItsHeader) {
  std::string damaged = coachText();
  damaged[50] = damaged[50] == 'x' ? 'y' : 'x';
  const std::string output = saydecode("", damaged + "\n" + playerText() + "\n").second;
  EXPECT_EQ(count(output, "checksum     does not hold\n"), 1U);
  EXPECT_EQ(count(output, "sender       3 left\n  destination  7\n"), 1U);
  EXPECT_EQ(count(output, "goalies"), 0U);
}

TEST(Saydecode, DrawsTheLastMessageThatHolds) {
  const std::string input = coachText(1) + "\n" + coachText(5) + "\n" + playerText();
  const std::string svg = saydecode("--svg /dev/stdout", input).second;
  for (const char* part : {"Time 5.", "<circle cx='6.2' cy='-18.4'"})
    EXPECT_EQ(count(svg, part), 1U);
  EXPECT_EQ(saydecode("--svg /nowhere/x.svg", input).first, 2);
}

}  // namespace
}  // namespace vok::test
