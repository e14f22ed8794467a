// Touches inferred from movement, held against the counters of real logs.
#include "inferredtouches.h"

#include <gtest/gtest.h>

#include "gamelog.h"

namespace vok::analysis {
namespace {

TEST(InferredTouches, AreThoseOfTheCounters) {
  int inferred = 0;
  int invented = 0;
  int single = 0;
  int rightSide = 0;
  int rightPlayer = 0;
  for (const std::string cut : {"full6", "json", "pen", "v4", "v5"}) {
    gamelogs::GameLog log;
    std::string error;
    ASSERT_TRUE(log.open(VOK_SOURCE_DIR "/tests/analysis/data/" + cut + ".rcg.gz", error)) << error;
    Frame before;
    Call mode;
    Call next;
    for (Told told = log.next(); told != Told::END; told = log.next()) {
      if (told == Told::CALL) next = log.call();
      if (told != Told::FRAME) continue;
      const Frame now = log.frame();
      const Step step{now, &before, next.isPlay(), mode.isPlay(), Period::FIRST_HALF};
      if (step.next() && step.play && step.playBefore) {
        const PlayerSet truth = countedTouches(now, &before).all;
        const PlayerSet found = inferredTouches(step, mode, log.rules()).all;
        inferred += found.empty() ? 0 : 1;
        invented += truth.empty() && !found.empty() ? 1 : 0;
        if (truth.count() == 1) {
          ++single;
          rightSide += found.onlyOf(sideOf(truth.first())) ? 1 : 0;
          rightPlayer += found.bits == truth.bits ? 1 : 0;
        }
      }
      before = now;
      mode = next;
    }
  }
  EXPECT_GT(single, 30);
  EXPECT_LE(invented, inferred / 100) << inferred;
  EXPECT_GE(rightSide, 0.995 * single) << single;
  EXPECT_GE(rightPlayer, 0.99 * single) << single;
}

// The player at the origin turns; an opponent beside him does nothing else.
TEST(InferredTouches, GoToThoseWhoDidNothingElse) {
  Frame before;
  before.ball = {0.5, 0};
  before.players[playerOf(SIDE_LEFT, 7)].state = STATE_ON_FIELD;
  before.players[playerOf(SIDE_RIGHT, 9)].state = STATE_ON_FIELD;
  before.players[playerOf(SIDE_RIGHT, 9)].pos = {1.2, 0};
  before.ballVel = {0.4, 0};
  Frame now = before;
  now.cycle = 1;
  now.counted = before.counted = false;
  const Step step{now, &before, true, true, Period::FIRST_HALF};
  const auto touched = [&](double ballX, double velocity, double body) {
    now.ball.x = ballX;
    now.ballVel.x = velocity;
    now.players[playerOf(SIDE_LEFT, 7)].body = body;
    return inferredTouches(step, Call(), MatchRules()).all.bits;
  };
  constexpr unsigned LEFT = 1U << 6U;
  constexpr unsigned RIGHT = 1U << 19U;
  EXPECT_EQ(touched(0.9, 0.376, 0), 0U) << "it rolls";
  EXPECT_EQ(touched(1.5, 0.94, 0), LEFT | RIGHT);
  EXPECT_EQ(touched(1.5, 0.94, 10), RIGHT);
  EXPECT_EQ(touched(0.7, -0.0376, 0), 0U) << "it hit somebody";
  EXPECT_EQ(touched(0.7, -0.0752, 10), RIGHT) << "it was kicked and hit somebody";
}

}  // namespace
}  // namespace vok::analysis
