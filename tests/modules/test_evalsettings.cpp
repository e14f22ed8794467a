// What the goal shot makes of its configuration and of the server's parameters.
#include <gtest/gtest.h>

#include <utility>

#include "goalshotmodule/goalshoteval.h"
#include "support/world.h"

namespace vok::test {
namespace {

TEST(GoalShotSettings, GoalAndLongestShotFollowTheServer) {
  Config::readFile(shippedConfig);
  GOAL_WIDTH = 10;
  BALL_SPEED_MAX = 2.7;
  BALL_DECAY = 0.94;
  for (const auto& [steps, maxDist] : {std::pair("10", 20.7623199), {"2", 2.7 * 1.94}, {"-5", 0}}) {
    setEntry("goal_maxSimSteps", steps);
    const GoalShotEval goal;
    EXPECT_NEAR(goal.maxDist, maxDist, 1e-6) << steps;
    EXPECT_EQ(goal.leftEdgeOfGoal, Vector2d(52.5, -5));
    EXPECT_EQ(goal.leftEdgeOfOurGoal, Vector2d(-52.5, 5));
  }
}

}  // namespace
}  // namespace vok::test
