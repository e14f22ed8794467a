#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <array>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <utility>
#include <vector>

#include "audiomgr.h"

using namespace vok;

namespace {

struct Result {
  int status;
  std::string output;  ///< both streams
};

std::string fileText(const std::string& name) {
  std::ifstream file(name, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// A file of this test's own, gone with it: tests run side by side.
struct TempFile {
  explicit TempFile(const std::string& kind)
      : name(testing::TempDir() + "saydecode" + std::to_string(getpid()) + kind) {}
  ~TempFile() { std::remove(name.c_str()); }
  const std::string name;
};

/// Runs the program with arguments for the shell and a standard input.
Result saydecode(const std::string& arguments, const std::string& input = "") {
  const TempFile in(".in");
  const TempFile out(".out");
  std::ofstream(in.name, std::ios::binary) << input;
  const std::string program = std::string(VOK_BIN_DIR) + "/saydecode ";
  const int status =
      std::system((program + arguments + " <" + in.name + " >" + out.name + " 2>&1").c_str());
  return {WIFEXITED(status) ? WEXITSTATUS(status) : -1, fileText(out.name)};
}

/// A coach's message: kicker 9, opponents 10 and 7, our player n at (-n, n), theirs at (n, -n/2).
std::string coachText(unsigned time = 2345) {
  AudioMsg msg(0, time, true);
  msg << true << NodaChar(2) << NodaChar(0) << 6.25 << -18.4;
  for (int n = 1; n <= 11; ++n) msg << -1.0 * n << 1.0 * n << 1.0 * n << -0.5 * n;
  const std::array<int, 12> types = {0, 17, -1, 62, 0, -1, -1, -1, -1, -1, -1, -1};
  msg << types.data() << Int3B(9U) << Int3B(7U + 12 * 10);
  AudioMgr(0, false, "vok", 1).SpeakTo(msg);
  return msg.getEncoding();
}

std::string playerText() {
  AudioMsg msg(7, 99, false);
  msg << true << 1.5;
  AudioMgr(3, true, "vok", 1).SpeakTo(msg);
  return msg.getEncoding();
}

std::size_t count(const std::string& text, const std::string& what) {
  std::size_t n = 0;
  for (auto at = text.find(what); at != std::string::npos; at = text.find(what, at + 1)) ++n;
  return n;
}

}  // namespace

TEST(Saydecode, PrintsWhatAPlayerReads) {
  const Result result = saydecode("'" + coachText() + "'");
  EXPECT_EQ(result.status, 0);
  for (const char* line :
       {"message 1, text 1", "kind         coach, 126 characters", "prefix       vok",
        "sender       0 right", "destination  all", "checksum     holds", "time         2345",
        "goalies      ours 1, theirs unknown", "kicker       9", "opponents    10 and 7",
        "ball         6.2  -18.4", " 1        -1.0    1.0     1.0   -0.5     17",
        " 2        -2.0    2.0     2.0   -1.0      -",
        " 3        -3.0    3.0     3.0   -1.5     62",
        "11       -11.0   11.0    11.0   -5.5      -"})
    EXPECT_EQ(count(result.output, std::string(line) + "\n"), 1U) << line;
}

TEST(Saydecode, FindsMessagesWhereverTheyStand) {
  const std::string text = coachText();
  const std::vector<std::pair<std::string, std::size_t>> inputs = {
      {text, 1},
      {"(freeform \"" + text + "\")", 1},
      {"2345,0\tRecv Alpha_Coach: (say (freeform \"" + text + "\"))\n", 1},
      {"(hear 9 self \"" + playerText() + "\")\r\n\n" + text + " " + text + "\n", 3},
      {text + coachText(6) + "xx", 2},
      {text.substr(0, 125), 0},
      {R"(The quick-brown-foxes (hear 62 (p "Alpha" 3) "p3l62"))", 0},
      {"", 0},
  };
  for (const auto& [input, messages] : inputs) {
    const Result result = saydecode("", input);
    EXPECT_EQ(count(result.output, "checksum     holds\n"), messages) << input;
    EXPECT_EQ(result.status, messages == 0 ? 1 : 0) << input;
    if (messages == 0) {
      EXPECT_EQ(result.output, "saydecode: no message found\n");
    }
  }
}

TEST(Saydecode, ADamagedMessageIsToldAndNotReadAndAPlayersHasOnlyItsHeader) {
  std::string damaged = coachText();
  damaged[50] = damaged[50] == 'x' ? 'y' : 'x';
  const Result result = saydecode("", damaged + "\n" + playerText() + "\n");
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(count(result.output, "checksum     does not hold\n"), 1U);
  EXPECT_EQ(count(result.output, "message 2, line 2\n  kind         player, 17 characters\n"), 1U);
  EXPECT_EQ(count(result.output, "sender       3 left\n  destination  7\n"), 1U);
  EXPECT_EQ(count(result.output, "goalies"), 0U);
}

TEST(Saydecode, DrawsTheLastMessageThatHolds) {
  const TempFile picture(".svg");
  const std::string input = coachText(1) + "\n" + coachText(5) + "\n" + playerText();
  EXPECT_EQ(saydecode("--svg " + picture.name, input).status, 0);
  const std::string svg = fileText(picture.name);
  EXPECT_EQ(count(svg, "Time 5."), 1U);
  EXPECT_EQ(count(svg, "<g transform="), 22U);
  EXPECT_EQ(count(svg, "stroke-dasharray"), 2U);
  EXPECT_EQ(count(svg, ">type 62<"), 1U);
  EXPECT_EQ(count(svg, "<circle cx='6.2' cy='-18.4'"), 1U);
  EXPECT_EQ(saydecode("--svg /nowhere/x.svg", input).status, 1);
  EXPECT_EQ(saydecode("--svg " + picture.name, playerText()).status, 1);
}

TEST(Saydecode, WrongCommandLinesGetOneLineAndHelpIsGiven) {
  for (const char* arguments : {"--svg", "--bogus", "-x", "-- ''"}) {
    const Result result = saydecode(arguments);
    EXPECT_EQ(result.status, 1) << arguments;
    EXPECT_EQ(count(result.output, "\n"), 1U) << result.output;
  }
  EXPECT_EQ(saydecode("--help").status, 0);
}

TEST(Saydecode, AnyBytesAreSurvived) {
  std::mt19937 random(5);
  std::string noise(200000, 'q');
  for (std::size_t i = 0; i < noise.size(); ++i) {
    if (i < 70000) noise[i] = msgEncodeChars[random() % 64];
    if (i > 140000) noise[i] = static_cast<char>(random());
  }
  const Result result = saydecode("", noise + "\n" + coachText());
  EXPECT_EQ(result.status, 0);
  EXPECT_EQ(count(result.output, "time         2345\n"), 1U);
}
