// The band and the places of the formations, and the settings of passes and goal shots.
#include "positioneval.h"

#include <gtest/gtest.h>

#include <cmath>
#include <utility>

#include "goalshoteval.h"
#include "passeval.h"
#include "support/world.h"
#include "tacticalmodule.h"

namespace vok::test {
namespace {

class Positions : public testing::Test {
 protected:
  // The offside line is at 10, or at a ball in front of that. The goalie is number 3: the shirts 1
  // and 2 have the tactical numbers 2 and 3.
  Positions() {
    world->adjustTacticalNumbers(3);
    world->otherTeam[1].pos = {50, 0};
    world->otherTeam[2].pos = {10, 0};
    world->otherTeam[1].age = world->otherTeam[2].age = 0;
  }

  void runCycle() {
    eval.CalMinMaxX(world.get());
    eval.CalPlayerPositions(world.get());
  }

  const std::unique_ptr<Worldmodel> world = coachsWorld();
  PositionEval eval{nullptr, nullptr};
};

// A ball that goes all over the field, or is nowhere, through every mode, with each formation,
// while the clock stands now and then: the band and the areas of all cycles in one number.
TEST_F(Positions, AreTheSameAsEver) {
  for (HalfFormation& places : eval.OffFormations) places[4].tact = 2;
  double sum = 0;
  for (int cycle = 0; cycle < 6000; ++cycle) {
    eval.defNo = cycle / 100 % 3;
    eval.offNo = cycle / 200 % 3;
    if (cycle % 12 > 2) ++world->time;
    world->playMode = cycle % 6 == 0 ? static_cast<play_mode>(cycle / 6 % 48) : PLAY_MODE_PLAY_ON;
    world->ball.pos = {54 * std::sin(0.11 * cycle), 36 * std::sin(0.07 * cycle)};
    world->otherTeam[2].pos.x = 20 * std::sin(0.05 * cycle);
    world->otherTeam[2].age = cycle % 22;
    if (cycle % 90 == 0) world->ball.pos = {cycle % 60 == 0 ? NAN : 1e308, -1e308};
    runCycle();
    sum += eval.GetMinX() + 2 * eval.GetMaxX() + 3 * eval.GetOffensive();
    for (int n = 2; n <= 11; ++n) {
      Vector2d lo, hi;
      eval.GetPlayerArea(world.get(), n, lo, hi);
      sum += n * (lo.x + 2 * lo.y + 3 * hi.x + 5 * hi.y);
    }
  }
  EXPECT_NEAR(sum, 19974702.091817174, 1e-5);
}

TEST_F(Positions, ThePointsOfAnAreaAreThoseWithinItsBorder) {
  world->ball.pos = {0, 34};
  runCycle();
  const Vector2d back = eval.GetPlayerPosition(world.get(), 5);
  // Its y is 22.7 of its own and 10 of the ball's, cut to the side limit of 29.
  EXPECT_FALSE(eval.IsInPlayerArea(world.get(), 5, back));
  EXPECT_TRUE(eval.IsInPlayerArea(world.get(), 5, back - Vector2d(0, 0.001)));
  EXPECT_FALSE(eval.IsInPlayerArea(world.get(), 10, {10, 0})) << "on the offside line";
  EXPECT_TRUE(eval.IsInPlayerArea(world.get(), 10, {9.999, 0}));
}

TEST_F(Positions, OnlyFieldPlayersWithATacticalNumberHaveAPlaceAndWatch) {
  world->ourTeam[8].tacticalNo = -1;
  runCycle();
  for (const int n : {0, 1, 3, 8, 12}) {
    EXPECT_EQ(eval.GetPlayerPosition(world.get(), n), Vector2d()) << n;
    EXPECT_FALSE(eval.IsInPlayerArea(world.get(), n, {})) << n;
  }
  // Player, watch, watched. No one is 10's third: that is not 8, who has no number either.
  constexpr int ROWS[][3] = {{4, 0, 2},  {4, 1, 5},   {4, 2, 7},   {5, 2, -1},  {10, 1, 11},
                             {2, 0, -1}, {10, 2, -1}, {4, -1, -1}, {11, 0, -1}, {4, 3, -1},
                             {7, 0, 4},  {8, 0, -1},  {8, 1, -1},  {8, 2, -1}};
  for (const auto& [n, k, watched] : ROWS)
    EXPECT_EQ(eval.GetPlayerWatchNo(world.get(), n, k), watched) << n << " " << k;
  world->ourTeam[5].tacticalNo = -1;
  EXPECT_EQ(eval.GetPlayerWatchNo(world.get(), 4, 1), -1) << "no player has the watched number";
  Vector2d low(1, 2);
  Vector2d high(3, 4);
  eval.GetPlayerArea(world.get(), 8, low, high);
  EXPECT_EQ(std::pair(low, high), std::pair(Vector2d(), Vector2d()));
}

TEST_F(Positions, AFormationThatDoesNotExistIsReported) {
  StderrCapture errors;
  setEntry("StartFormationDef", "2");
  setEntry("StartFormationOff", "3");
  const PositionEval other(nullptr, nullptr);
  EXPECT_EQ(std::pair(other.defNo, other.offNo), std::pair(2, 0));
  EXPECT_EQ(errors.take(), "WARNING: StartFormationOff is 3, not 0, 1 or 2; 0 is taken.\n");
}

TEST(Settings, GoalAndLongestShotFollowTheServer) {
  Config::readFile(PLAIN_CONFIG);
  GOAL_WIDTH = 10;
  BALL_SPEED_MAX = 2.7;
  BALL_DECAY = 0.94;
  for (const auto& [steps, maxDist] : {std::pair("10", 20.7623199), {"2", 2.7 * 1.94}, {"-5", 0}}) {
    setEntry("goal_maxSimSteps", steps);
    const GoalShotEval goal;
    EXPECT_NEAR(goal.maxDist, maxDist, 1e-6) << steps;
    EXPECT_EQ(goal.leftEdgeOfGoal, Vector2d(52.5, -5));
    EXPECT_EQ(goal.rightEdgeOfGoal, Vector2d(52.5, 5));
    EXPECT_EQ(goal.leftEdgeOfOurGoal, Vector2d(-52.5, 5));
    EXPECT_EQ(goal.rightEdgeOfOurGoal, Vector2d(-52.5, -5));
  }
}

TEST(Settings, EachKeyHasItsOwnMember) {
  Config::readFile(PLAIN_CONFIG);
  auto setInTurn = [value = 0](auto... key) mutable {
    (setEntry(key, std::to_string(++value).c_str()), ...);
  };
  setInTurn("goal_minDistToCorner", "goal_maxDistToCorner", "goal_maxAge", "goal_maxKickDuration",
            "goal_score_POOR", "goal_score_AVERAGE", "goal_score_GOOD", "goal_score_PERFECT",
            "goal_maxSimSteps", "pass_sameLevelLength", "pass_maxKickDuration",
            "pass_maxKickLength", "pass_rpassLatticeLength", "pass_shortPassLength",
            "pass_shortPassLengthGoalie", "pass_securityDist", "pass_borderDist", "pass_score_POOR",
            "pass_score_AVERAGE", "pass_score_GOOD", "pass_score_PERFECT", "ourDefenders",
            "ourDefMidfield", "ourOffMidfield", "ourOffenders", "tac_ourEdgeDefender",
            "tac_ourEdgeDefMidfield", "tac_ourEdgeOffMidfield", "tac_ourEdgeOffender",
            "tac_ourEdgeGoalie", "tac_otherEdgeDefender", "tac_otherEdgeDefMidfield",
            "tac_otherEdgeOffMidfield", "tac_otherEdgeOffender", "tac_otherEdgeGoalie");
  const GoalShotEval g;
  const PassEval p(&g);
  const TacticalModule t(nullptr, nullptr);
  const auto expectInTurn = [](auto... member) {
    int value = 0;
    for (const double m : {static_cast<double>(member)...}) EXPECT_EQ(m, ++value);
  };
  expectInTurn(g.minDistToCorner, g.maxDistToCorner, g.maxAge, g.maxKickDuration, g.score_POOR,
               g.score_AVERAGE, g.score_GOOD, g.score_PERFECT, g.maxSimSteps, p.SAMELEVEL_LENGTH,
               p.MAXKICK_DURATION, p.MAXPASS_LENGTH, p.RPASS_LATTICELENGTH, p.SHORTPASS_LENGTH,
               p.SHORTPASS_LENGTH_GOALIE, p.SECURITY_DIST, p.BORDER_DIST, p.SCORE_POOR,
               p.SCORE_AVERAGE, p.SCORE_GOOD, p.SCORE_PERFECT, t.ourSystem.numDefenders,
               t.ourSystem.numDefMidfield, t.ourSystem.numOffMidfield, t.ourSystem.numOffenders,
               t.ourEdgeDefender, t.ourEdgeDefMidfield, t.ourEdgeOffMidfield, t.ourEdgeOffender,
               t.ourEdgeGoalie, t.otherEdgeDefender, t.otherEdgeDefMidfield, t.otherEdgeOffMidfield,
               t.otherEdgeOffender, t.otherEdgeGoalie);
}

}  // namespace
}  // namespace vok::test
