// The world of a player is checked on real traffic: tests/data/player_right_10.txt holds the first
// 300 cycles of a match, as a real server sent them to a player of "Beta" on the right.
#include "seecheck.h"

#include <gtest/gtest.h>

#include <fstream>
#include <sstream>

#include "recording.h"
#include "support/server.h"

namespace vok::seecheck {
namespace {

constexpr const char* FILES = VOK_SOURCE_DIR "/tests/data/player_right_10";

class SeeCheck : public testing::Test {
 protected:
  SeeCheck() {
    EXPECT_TRUE(tools::readFile(FILES + std::string(".txt"), recording, error)) << error;
    EXPECT_TRUE(tools::readFile(FILES + std::string(".truth.tsv"), truth, error)) << error;
    truth.turnTo(recording.side);
  }

  /// Takes the distances out of all views: what they tell in low quality.
  void lowerQuality() {
    for (PlayerRecording::Text& entry : recording.texts) {
      if (entry.sent) continue;
      if (const auto at = entry.text.find("view_mode high"); at != std::string::npos) {
        entry.text.replace(at, 14, "view_mode low ");
      }
      if (!entry.text.starts_with("(see ") || ++views < 40) continue;
      std::string low = entry.text.substr(0, entry.text.find("(("));
      for (auto at = entry.text.find("(("); at != std::string::npos;) {
        const auto name = entry.text.find(") ", at) + 2;
        std::istringstream numbers(entry.text.substr(name));
        std::string distance;
        std::string direction;
        numbers >> distance >> direction;
        low += entry.text.substr(at, name - at) + direction.substr(0, direction.find(')')) + ") ";
        at = entry.text.find("((", name);
      }
      entry.text = low + ")";
    }
  }

  test::StderrCapture errors;
  PlayerRecording recording;
  Truth truth;
  Findings findings;
  std::string error;
  int views = 0;
};

TEST_F(SeeCheck, MemoryKeepsTheWorldNearTheTruth) {
  ASSERT_TRUE(check(recording, truth, findings, error)) << error;
  EXPECT_EQ(std::tuple(findings.views, findings.standing, findings.lowViews),
            std::tuple(299, 101, 0));
  EXPECT_LT(share(findings.position.world, 0.5), 0.02);
  EXPECT_LT(share(findings.position.world, 1), 0.2);
  EXPECT_LT(share(findings.face.world, 0.5), 0.03);
  EXPECT_LT(share(findings.velocity.world, 0.95), 0.01);
  EXPECT_EQ(findings.givenWrong, 0);
  EXPECT_GT(findings.given, 120);
}

TEST_F(SeeCheck, DirectionsAloneTellThePlace) {
  lowerQuality();
  ASSERT_TRUE(check(recording, truth, findings, error)) << error;
  EXPECT_GT(findings.lowPosition.world.size(), 150U);
  EXPECT_LT(share(findings.lowPosition.world, 0.5), 0.05);
  EXPECT_LT(share(findings.lowPosition.world, 1), 0.6);
  EXPECT_LT(share(findings.lowFace.world, 0.5), 0.05);
}

TEST(SeeCheckProgram, EndsWithOneWhenAGoalIsMissed) {
  const std::string files = FILES;
  const std::string tool = VOK_BIN_DIR "/seecheck " + files + ".txt ";
  const auto [status, table] = test::runCommand(tool + files + ".truth.tsv");
  EXPECT_EQ(status, 0) << table;
  EXPECT_EQ(test::count(table, "MISSED"), 0U) << table;
  // The player stands 20 cm beside where it is.
  const std::string shift = "awk -F'\\t' -v OFS='\\t' '{$2 += 0.2} 1' ";
  const auto [shifted, missed] =
      test::runCommand("grep -v '^#' " + files + ".truth.tsv | " + shift + " | " + tool + "-");
  EXPECT_EQ(shifted, 1) << missed;
  EXPECT_EQ(test::count(missed, "MISSED"), 3U) << missed;  // its place, and who the others are
}

TEST_F(SeeCheck, BadFilesAreRefused) {
  for (const char* text : {"", "1\t2\t3\n", "1 0 0 0 0 0 0 0 0 0 0 l 12 0 0 0\n",
                           "1 0 0 0 0 0 0 0 0 0 0 x 1 0 0 0\n", "1 0 0 0 0 0 0 0 0 0 0 l 1 0\n"}) {
    std::istringstream in(text);
    EXPECT_FALSE(truth.read(in, error)) << text;
  }
  for (const char* text : {"", "1\t(think)\n", "1\t=\t(think)\n", "1\t>\t(init A (version 9))\n"}) {
    std::istringstream in(text);
    PlayerRecording bad;
    EXPECT_FALSE(bad.read(in, error)) << text;
  }
  recording.texts.resize(3);
  EXPECT_FALSE(check(recording, truth, findings, error));
}

}  // namespace
}  // namespace vok::seecheck
