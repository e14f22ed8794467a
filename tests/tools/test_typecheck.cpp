// The verdicts are checked on real traffic: tests/data/types_left.txt holds the first 600 cycles of
// a match, as a real server sent them to the coach of "Alpha" on the left.
#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "Config.h"
#include "check.h"
#include "support/server.h"

namespace vok::typecheck {
namespace {

class TypeCheck : public testing::Test {
 protected:
  TypeCheck() {
    std::ifstream file(VOK_SOURCE_DIR "/tests/data/types_left.txt");
    std::ifstream types(VOK_SOURCE_DIR "/tests/data/types_left.truth.tsv");
    EXPECT_TRUE(capture.read(file, error) && truth.read(types, error)) << error;
  }

  void follow(bool fromDecay) {
    ASSERT_TRUE(check(capture, truth, "Alpha", SIDE_LEFT, fromDecay, findings, error)) << error;
  }

  test::StderrCapture errors;
  tools::Recording capture;
  Truth truth;
  Findings findings;
  std::string error;
};

TEST_F(TypeCheck, AllOpponentsAreKnownSoonAndNoVerdictIsEverWrong) {
  follow(true);
  for (int n = 1; n <= 11; ++n) {
    EXPECT_TRUE(findings[n].isRight()) << n << " " << findings[n].verdict;
    EXPECT_EQ(findings[n].wrongOnTheWay, 0) << n;
    EXPECT_LE(findings[n].playOn, 30) << n;
  }
  follow(false);
  for (int n = 1; n <= 11; ++n) EXPECT_EQ(findings[n].verdict, -1) << n;
}

TEST_F(TypeCheck, AWrongTruthShows) {
  std::istringstream wrong("1\tr\t2\t17\n1\tr\t3\t15\n400\tr\t2\t5\n");
  ASSERT_TRUE(truth.read(wrong, error));
  EXPECT_EQ(truth.typeAt(SIDE_RIGHT, 2, 399), 17);
  EXPECT_EQ(truth.typeAt(SIDE_RIGHT, 2, 400), 5);
  follow(true);
  EXPECT_TRUE(findings[2].isWrong()) << "not announced, not seen";
  EXPECT_EQ(findings[2].wrongOnTheWay, 0);
  EXPECT_TRUE(findings[3].isWrong());
  EXPECT_EQ(findings[3].wrongOnTheWay, 1);
}

TEST_F(TypeCheck, BadFilesAreRefused) {
  const auto refused = [this](auto& content, const char* text) {
    std::istringstream in(text);
    return !content.read(in, error);
  };
  for (const char* text : {"", "1 l 1\n", "1 x 1 0\n", "1 l 12 0\n", "1 l 1 -1\n", "1 l 1 0 9\n"})
    EXPECT_TRUE(refused(truth, text)) << text;
  EXPECT_FALSE(check(capture, truth, "Alpha", SIDE_RIGHT, true, findings, error));
  EXPECT_FALSE(check(capture, truth, "Beta", SIDE_LEFT, true, findings, error));
  for (const char* text :
       {"12 (think)\n", "1\t(think)\n", "1x\t(init l ok)\n", "14\t(init l ok)\nx\t(think)\n"})
    EXPECT_TRUE(refused(capture, text)) << text;
}

}  // namespace
}  // namespace vok::typecheck
