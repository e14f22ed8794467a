#include <gtest/gtest.h>

#include "audiomgr.h"
#include "coachmessage.h"
#include "support/server.h"

namespace vok::test {
namespace {

/// Runs the program with the input, in which printf may find a place for a number: its status, and
/// what it wrote on both streams.
std::pair<int, std::string> saydecode(const std::string& input, const std::string& options = "") {
  return runCommand("printf '" + input + "' 0 | " VOK_BIN_DIR "/saydecode" + options);
}

std::string coachText(unsigned time) {
  AudioMsg msg(0, time, true);
  CoachMessage().write(msg);
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
  for (const auto& [input, messages] :
       {std::pair("(hear 9 self \"" + playerText() + "\")\\r\\n\\n" + text + " " + text, 3U),
        {text + coachText(6) + "xx", 2U},
        {"%070000d\\377\\000\\n" + text, 1U},
        {text.substr(0, 125), 0U}}) {
    const auto [status, output] = saydecode(input);
    EXPECT_EQ(status, messages == 0 ? 1 : 0);
    EXPECT_EQ(count(output, "checksum     holds\n"), messages) << output;
  }
}

TEST(Saydecode, ShowsDamagedAndPlayersMessagesByTheirHeadersAndDrawsTheLastThatHolds) {
  std::string damaged = coachText(6);
  damaged[50] = damaged[50] == 'x' ? 'y' : 'x';
  const std::string input = coachText(1) + " " + coachText(5) + " " + damaged + " " + playerText();
  const std::string output = saydecode(input, " --svg /dev/stdout").second;
  for (const auto& [text, times] : {std::pair("checksum     does not hold\n", 1U),
                                    {"sender       3 left\n  destination  7\n", 1U},
                                    {"goalies", 2U},
                                    {"Time 5.", 1U}})
    EXPECT_EQ(count(output, text), times) << text;
}

}  // namespace
}  // namespace vok::test
