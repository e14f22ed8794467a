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
std::string coachText(unsigned time) {
  AudioMsg msg(0, time, true);
  CoachMessage told;
  told.ball = {6.25, -18.4};
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
  const std::string text = coachText(2345);
  std::mt19937 random(5);
  std::string noise;
  for (int i = 0; i < 90000; ++i)
    noise += i < 70000 ? msgEncodeChars[random() % 64] : static_cast<char>(random());
  for (const auto& [input, messages] :
       {std::pair("(hear 9 self \"" + playerText() + "\")\r\n\n" + text + " " + text, 3U),
        {text + coachText(6) + "xx", 2U},
        {noise + "\n" + text, 1U},
        {text.substr(0, 125), 0U}}) {
    const auto [status, output] = saydecode("", input);
    EXPECT_EQ(status, messages == 0 ? 1 : 0);
    EXPECT_EQ(count(output, "checksum     holds\n"), messages) << output;
  }
}

TEST(Saydecode, ShowsDamagedAndPlayersMessagesByTheirHeadersAndDrawsTheLastThatHolds) {
  std::string damaged = coachText(6);
  damaged[50] = damaged[50] == 'x' ? 'y' : 'x';
  const std::string output = saydecode("--svg /dev/stdout", coachText(1) + " " + coachText(5) +
                                                                " " + damaged + " " + playerText())
                                 .second;
  for (const auto& [text, times] : {std::pair("checksum     does not hold\n", 1U),
                                    {"sender       3 left\n  destination  7\n", 1U},
                                    {"goalies", 2U},
                                    {"Time 5.", 1U},
                                    {"<circle cx='6.2' cy='-18.4'", 1U}})
    EXPECT_EQ(count(output, text), times) << text;
}

}  // namespace
}  // namespace vok::test
