// What the modules ask of the configuration, and what they make of it.
#include <gtest/gtest.h>

#include <cstdlib>
#include <sstream>
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

TEST(EvalSettings, GoalAndLongestShotFollowTheServer) {
  Config::readFile(shippedConfig);
  const double width = std::exchange(GOAL_WIDTH, 10);
  const double speed = std::exchange(BALL_SPEED_MAX, 2.7);
  const double decay = std::exchange(BALL_DECAY, 0.94);
  const std::pair<const char*, double> rows[] = {
      {"10", 20.7623199}, {"1", 2.7}, {"2", 2.7 * 1.94}, {"0", 0}, {"-5", 0}};
  for (const auto& [steps, maxDist] : rows) {
    setEntry("goal_maxSimSteps", steps);
    const GoalShotEval goal;
    EXPECT_NEAR(goal.maxDist, maxDist, 1e-6) << steps;
    EXPECT_EQ(goal.leftEdgeOfGoal, Vector2d(52.5, -5));
    EXPECT_EQ(goal.leftEdgeOfOurGoal, Vector2d(-52.5, 5));
  }
  GOAL_WIDTH = width;
  BALL_SPEED_MAX = speed;
  BALL_DECAY = decay;
}

// With everything from a key on malformed, building must stop at that very key.
void expectKeysInOrder(const std::string& words, void (*build)()) {
  std::istringstream in(words);
  std::vector<std::string> keys;
  for (std::string key; in >> key;) keys.push_back(key);
  for (std::size_t i = 0; i < keys.size(); ++i) {
    const auto breakAndBuild = [&] {
      Config::readFile(shippedConfig);
      for (std::size_t k = i; k < keys.size(); ++k) setEntry(keys[k].c_str(), "x");
      build();
      std::exit(0);
    };
    EXPECT_EXIT(breakAndBuild(), testing::ExitedWithCode(10), "value 'x' for key '" + keys[i]);
  }
}

TEST(EvalSettings, KeysAreAskedForInTheirOrderAndABadOneEndsTheProcess) {
  expectKeysInOrder(
      "goal_minDistToCorner goal_maxDistToCorner goal_maxAge goal_maxKickDuration goal_score_POOR "
      "goal_score_AVERAGE goal_score_GOOD goal_score_PERFECT goal_maxSimSteps",
      [] { GoalShotEval(); });
  expectKeysInOrder(
      "pass_sameLevelLength pass_maxKickDuration pass_maxKickLength pass_rpassLatticeLength "
      "pass_shortPassLength pass_shortPassLengthGoalie pass_securityDist pass_borderDist "
      "pass_score_POOR pass_score_AVERAGE pass_score_GOOD pass_score_PERFECT",
      [] { PassEval(nullptr); });
  expectKeysInOrder(
      "ourDefenders ourDefMidfield ourOffMidfield ourOffenders tac_ourEdgeDefender "
      "tac_ourEdgeDefMidfield tac_ourEdgeOffMidfield tac_ourEdgeOffender tac_ourEdgeGoalie "
      "tac_otherEdgeDefender tac_otherEdgeDefMidfield tac_otherEdgeOffMidfield "
      "tac_otherEdgeOffender tac_otherEdgeGoalie",
      [] { TacticalModule(nullptr, nullptr); });
}

}  // namespace
}  // namespace vok::test
