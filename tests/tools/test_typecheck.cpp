// The verdicts are checked on real traffic: tests/data/types_left.txt holds the first 600 cycles of
// a match, as a real server sent them to the coach of "Alpha" on the left.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "check.h"
#include "support/server.h"

namespace vok::typecheck {
namespace {

class TypeCheck : public testing::Test {
 protected:
  TypeCheck() {
    EXPECT_TRUE(tools::readFile(VOK_SOURCE_DIR "/tests/data/types_left.txt", capture, error));
    EXPECT_TRUE(tools::readFile(VOK_SOURCE_DIR "/tests/data/types_left.truth.tsv", truth, error));
  }
  bool follow(bool fromDecay = true, const char* team = "Alpha", playing_side side = SIDE_LEFT) {
    return check(capture, truth, team, side, fromDecay, findings, error);
  }

  test::StderrCapture errors;
  tools::Recording capture;
  Truth truth;
  Findings findings;
  std::string error;
};

TEST_F(TypeCheck, AllOpponentsAreKnownSoonAndNoVerdictIsEverWrong) {
  ASSERT_TRUE(follow());
  for (int n = 1; n <= 11; ++n) {
    EXPECT_TRUE(findings[n].isRight()) << n << " " << findings[n].verdict;
    EXPECT_EQ(findings[n].wrongOnTheWay, 0) << n;
    EXPECT_LE(findings[n].playOn, 30) << n;
  }
  ASSERT_TRUE(follow(false));
  for (int n = 1; n <= 11; ++n) EXPECT_EQ(findings[n].verdict, -1) << n;
}

TEST_F(TypeCheck, AWrongTruthShows) {
  std::istringstream wrong("1\tr\t2\t17\n1\tr\t3\t15\n400\tr\t2\t5\n");
  ASSERT_TRUE(truth.read(wrong, error) && follow());
  EXPECT_TRUE(findings[2].isWrong() && findings[3].isWrong());
  EXPECT_EQ(findings[2].wrongOnTheWay, 0) << "not announced, not seen";
  EXPECT_EQ(findings[3].wrongOnTheWay, 1);
}

TEST(TypeCheckProgram, EndsWithOneForAWrongVerdictOnAnyOpponent) {
  for (const std::string number : {"1", "11"}) {
    const std::string changed = "s/^\\(1\tr\t" + number + "\t\\).*/\\14/";
    const auto [status, output] =
        test::runCommand("cd " VOK_SOURCE_DIR "/tests/data && sed '" + changed +
                         "' types_left.truth.tsv | " VOK_BIN_DIR
                         "/typecheck types_left.txt - --team Alpha --side l");
    EXPECT_EQ(status, 1) << number;
    for (const char* sums : {"  10 of 11 right, 1 wrong, 0 unknown; 1 wrong on the way\n",
                             "  0 of 11 right, 0 wrong, 11 unknown; 0 wrong on the way\n"})
      EXPECT_NE(output.find(sums), std::string::npos) << output;
  }
}

TEST_F(TypeCheck, BadFilesAreRefused) {
  EXPECT_FALSE(follow(true, "Alpha", SIDE_RIGHT) || follow(true, "Beta"));
  for (const char* text : {"", "1 l 1\n", "1 x 1 0\n", "1 l 12 0\n", "1 l 1 -1\n", "1 l 1 0 9\n"}) {
    std::istringstream in(text);
    EXPECT_FALSE(truth.read(in, error)) << text;
  }
  std::istringstream fromTheStart("0\t(init l ok)\n");
  EXPECT_TRUE(capture.read(fromTheStart, error));
  for (const char* text : {"-1\t(init l ok)\n", "1\t(think)\n", "1x\t(init l ok)\n",
                           "14\t(init l ok)\nx\t(think)\n"}) {
    std::istringstream in(text);
    EXPECT_FALSE(capture.read(in, error)) << text;
  }
}

}  // namespace
}  // namespace vok::typecheck
