// What the modules ask of the configuration, and what they make of it.
#include <gtest/gtest.h>

#include <cstdlib>
#include <string>
#include <utility>
#include <vector>

#include "Config.h"
#include "constants.h"
#include "goalshotmodule/goalshoteval.h"
#include "passmodule/passeval.h"
#include "support/server.h"
#include "tacticalmodule/tacticalmodule.h"

namespace vok::test {
namespace {

TEST(EvalSettings, EveryKeyReachesItsMember) {
  Config::readFile(shippedConfig);
  const GoalShotEval goal;
  EXPECT_EQ(goal.minDistToCorner, 0.5);
  EXPECT_EQ(goal.maxDistToCorner, 2.0);
  EXPECT_EQ(goal.maxAge, 3);
  EXPECT_EQ(goal.maxKickDuration, 4);
  EXPECT_EQ(goal.score_POOR, 20);
  EXPECT_EQ(goal.score_AVERAGE, 40);
  EXPECT_EQ(goal.score_GOOD, 60);
  EXPECT_EQ(goal.score_PERFECT, 80);
  EXPECT_EQ(goal.maxSimSteps, 25);

  const PassEval pass(&goal);
  EXPECT_EQ(pass.goalshoteval, &goal);
  EXPECT_EQ(pass.SAMELEVEL_LENGTH, 3.0);
  EXPECT_EQ(pass.MAXKICK_DURATION, 4);
  EXPECT_EQ(pass.MAXPASS_LENGTH, 35.0);
  EXPECT_EQ(pass.RPASS_LATTICELENGTH, 5.0);
  EXPECT_EQ(pass.SHORTPASS_LENGTH, 12.0);
  EXPECT_EQ(pass.SHORTPASS_LENGTH_GOALIE, 20.0);
  EXPECT_EQ(pass.SECURITY_DIST, 1.5);
  EXPECT_EQ(pass.BORDER_DIST, 2.0);
  EXPECT_EQ(pass.SCORE_POOR, 20);
  EXPECT_EQ(pass.SCORE_AVERAGE, 40);
  EXPECT_EQ(pass.SCORE_GOOD, 60);
  EXPECT_EQ(pass.SCORE_PERFECT, 80);
}

TEST(EvalSettings, ThePostsStandAtTheServersGoalWidth) {
  Config::readFile(shippedConfig);
  const double width = GOAL_WIDTH;
  GOAL_WIDTH = 10;
  const GoalShotEval goal;
  GOAL_WIDTH = width;
  EXPECT_EQ(goal.leftEdgeOfGoal, Vector2d(52.5, -5));
  EXPECT_EQ(goal.rightEdgeOfGoal, Vector2d(52.5, 5));
  EXPECT_EQ(goal.leftEdgeOfOurGoal, Vector2d(-52.5, 5));
  EXPECT_EQ(goal.rightEdgeOfOurGoal, Vector2d(-52.5, -5));
}

TEST(EvalSettings, TheLongestShotIsWhatTheBallRollsInTheSimulatedCycles) {
  Config::readFile(shippedConfig);
  const double speed = std::exchange(BALL_SPEED_MAX, 2.7);
  const double decay = std::exchange(BALL_DECAY, 0.94);
  const struct {
    const char* steps;
    double maxDist;
  } rows[] = {{"10", 20.7623199}, {"1", 2.7}, {"2", 2.7 * 1.94}, {"0", 0}, {"-5", 0}};
  for (const auto& row : rows) {
    setEntry("goal_maxSimSteps", row.steps);
    EXPECT_NEAR(GoalShotEval().maxDist, row.maxDist, 1e-6) << row.steps;
  }
  BALL_SPEED_MAX = speed;
  BALL_DECAY = decay;
}

// With everything from a key on malformed, building must stop at that very key.
void expectKeysInOrder(const std::vector<const char*>& keys, void (*build)()) {
  for (std::size_t i = 0; i < keys.size(); ++i) {
    const auto breakAndBuild = [&] {
      Config::readFile(shippedConfig);
      for (std::size_t k = i; k < keys.size(); ++k) setEntry(keys[k], "x");
      build();
      std::exit(0);
    };
    EXPECT_EXIT(breakAndBuild(), testing::ExitedWithCode(10),
                std::string("FATAL: value 'x' for key '") + keys[i] + "' not a");
  }
}

TEST(EvalSettings, KeysAreAskedForInTheirOrderAndABadOneEndsTheProcess) {
  testing::GTEST_FLAG(death_test_style) = "fast";
  expectKeysInOrder({"goal_minDistToCorner", "goal_maxDistToCorner", "goal_maxAge",
                     "goal_maxKickDuration", "goal_score_POOR", "goal_score_AVERAGE",
                     "goal_score_GOOD", "goal_score_PERFECT", "goal_maxSimSteps"},
                    [] { GoalShotEval(); });
  expectKeysInOrder(
      {"pass_sameLevelLength", "pass_maxKickDuration", "pass_maxKickLength",
       "pass_rpassLatticeLength", "pass_shortPassLength", "pass_shortPassLengthGoalie",
       "pass_securityDist", "pass_borderDist", "pass_score_POOR", "pass_score_AVERAGE",
       "pass_score_GOOD", "pass_score_PERFECT"},
      [] { PassEval(nullptr); });
  expectKeysInOrder(
      {"ourDefenders", "ourDefMidfield", "ourOffMidfield", "ourOffenders", "tac_ourEdgeDefender",
       "tac_ourEdgeDefMidfield", "tac_ourEdgeOffMidfield", "tac_ourEdgeOffender",
       "tac_ourEdgeGoalie", "tac_otherEdgeDefender", "tac_otherEdgeDefMidfield",
       "tac_otherEdgeOffMidfield", "tac_otherEdgeOffender", "tac_otherEdgeGoalie"},
      [] { TacticalModule(nullptr, nullptr); });
}

}  // namespace
}  // namespace vok::test
