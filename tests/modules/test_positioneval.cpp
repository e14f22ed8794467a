// The band and the places of the shipped formation, and what the goal shot makes of its settings,
// against numbers worked out by hand.
#include "positioneval.h"

#include <gtest/gtest.h>

#include <array>
#include <cmath>
#include <tuple>
#include <utility>

#include "goalshoteval.h"
#include "support/world.h"

namespace vok::test {
namespace {

class Positions : public testing::Test {
 protected:
  // The offside line is at 10, or at a ball in front of that.
  Positions() {
    world->adjustTacticalNumbers(1);
    world->otherTeam[1].pos = {50, 0};
    world->otherTeam[2].pos = {10, 0};
    world->otherTeam[1].age = world->otherTeam[2].age = 0;
  }

  void runCycles(int cycles) {
    for (int i = 0; i < cycles; ++i) {
      ++world->time;
      eval.CalMinMaxX(world.get());
      eval.CalPlayerPositions(world.get());
    }
  }

  const std::unique_ptr<Worldmodel> world = shippedWorld();
  PositionEval eval{nullptr, nullptr};
};

// Name, play mode, ball, minX before; minX, maxX and offensive after.
using Band = std::tuple<const char*, play_mode, Vector2d, double, double, double, double>;

const Band BANDS[] = {
    {"midfield", PLAY_MODE_PLAY_ON, {0, 20}, -18.5, -18.25, 8, 10.375 / 18.375},
    {"the back line advances slowly", PLAY_MODE_PLAY_ON, {0, 20}, -25, -24.75, 8, 14.925 / 22.925},
    {"deep: 35 m long, retreats at once", PLAY_MODE_PLAY_ON, {-50, 0}, 0, -44.25, -15, 0},
    {"deep: on at once", PLAY_MODE_PLAY_ON, {-35, 0}, -44.25, -38.9242424242, -3.9242424242, 0},
    {"behind their goal line", PLAY_MODE_PLAY_ON, {60, 0}, 0, 0, 44.25, 1},
    {"goal", PLAY_MODE_GOAL_US, {52.5, 0}, -28, -26.5, -2, 1},
    {"goal against us", PLAY_MODE_GOAL_THEM, {-52.5, 0}, -28, -26.5, -17.5, 0},
    {"our goal kick", PLAY_MODE_GOAL_KICK_US, {-47, 5}, -20, -32, -5.75, 0},
    {"our free kick at our goal", PLAY_MODE_FREE_KICK_US, {-40, 5}, -20, -32, -5.75, 0},
    {"our free kick", PLAY_MODE_FREE_KICK_US, {0, 20}, -18.5, -18.25, 8, 10.375 / 18.375},
    {"their free kick at their goal", PLAY_MODE_FREE_KICK_THEM, {47, 5}, 0, 0, 30, 1},
    {"their free kick at ours", PLAY_MODE_FREE_KICK_THEM, {-50, 0}, 0, -44.25, -15, 0},
    {"our corner kick", PLAY_MODE_CORNER_KICK_US, {52, 33}, 0, 0, 40, 1},
};

TEST_F(Positions, TheBandFollowsBallOffsideLineAndPlayMode) {
  for (const auto& [name, mode, ball, oldMinX, minX, maxX, offensive] : BANDS) {
    eval = PositionEval(nullptr, nullptr);
    eval.minX = oldMinX;
    world->playMode = mode;
    world->ball.pos = ball;
    for (int again = 0; again < 2; ++again) eval.CalMinMaxX(world.get());  // of one cycle
    EXPECT_NEAR(eval.GetMinX(), minX, 1e-9) << name;
    EXPECT_NEAR(eval.GetMaxX(), maxX, 1e-9) << name;
    EXPECT_NEAR(eval.GetOffensive(), offensive, 1e-9) << name;
  }
}

// Where the players of tactical numbers 2..11 stand when the ball has rested for long: x, y each.
const std::pair<Vector2d, std::array<double, 20>> SETTLED[] = {
    {{-52.5, -34}, {{-43.1800, -20.6235, -44.2500, -13.4423, -44.2500, -5.1714,  -43.1800,
                     2.2103,   -36.9012, -12.6219, -36.8113, -4.5880,  -29.5472, -23.2032,
                     -29.2700, 7.3972,   -13.7550, -14.4507, -13.7550, 1.8693}}},
    {{52.5, 34}, {{9.7350,  -18.1071, 1.7700,  -2.4037, 1.7700,  10.1817, 9.7350,
                   27.2263, 16.8150,  -1.1186, 16.8150, 11.4299, 30.9750, -12.6806,
                   30.9750, 24.8578,  43.3650, 0.6549,  43.3650, 12.2492}}},
};

TEST_F(Positions, TheShippedFormationStandsWhereItShould) {
  for (const auto& [ball, places] : SETTLED) {
    world->ball.pos = ball;
    eval = PositionEval(nullptr, nullptr);
    runCycles(120);
    for (std::size_t i = 0; i < 10; ++i) {
      const Vector2d error = eval.GetPlayerPosition(world.get(), static_cast<int>(i) + 2) -
                             Vector2d(places.at(2 * i), places.at(2 * i + 1));
      EXPECT_LT(error.getLength(), 1e-4) << i + 2 << " ball at " << ball.x;
    }
  }
}

TEST_F(Positions, TheBallFactorsRiseAndFallAtTheirOwnRates) {
  // Cycles with a share of attack, and the factors then.
  constexpr std::tuple<int, double, double, double> ROWS[] = {
      {20, 0.5, 1, 2.0 / 3}, {5, 0.4999, 1 - 5.0 / 30, 2.0 / 3 - 0.5}};
  for (const auto& [cycles, offensive, factorOff, factorDef] : ROWS) {
    eval.offensive = offensive;
    for (int i = 0; i < cycles; ++i) eval.CalPlayerPositions(world.get());
    EXPECT_NEAR(eval.ballFactorOff, factorOff, 1e-9);
    EXPECT_NEAR(eval.ballFactorDef, factorDef, 1e-9);
  }
}

TEST_F(Positions, AreasEndAtTheSideLimitAndTheForwardsAtTheOffsideLine) {
  world->ball.pos = {0, 34};
  runCycles(1);
  Vector2d lo, hi;
  const Vector2d back = eval.GetPlayerPosition(world.get(), 5);
  EXPECT_EQ(back.y, 29);  // 22.7 of its own and 10 of the ball's
  eval.GetPlayerArea(world.get(), 5, lo, hi);
  EXPECT_NEAR(lo.y, 29 - 13.6, 1e-9);
  EXPECT_NEAR(hi.x - lo.x, 2 * 0.3 * (eval.maxX - eval.minX), 1e-9);
  EXPECT_FALSE(eval.IsInPlayerArea(world.get(), 5, back)) << "the border is outside";
  eval.GetPlayerArea(world.get(), 10, lo, hi);
  EXPECT_EQ(hi.x, 10);
}

TEST_F(Positions, OnlyFieldPlayersWithATacticalNumberHaveAPlaceAndWatch) {
  world->adjustTacticalNumbers(3);  // shirts 1 and 2 play tactical numbers 2 and 3
  world->ourTeam[8].tacticalNo = -1;
  runCycles(1);
  for (const int n : {0, 1, 3, 8, 12}) {
    EXPECT_EQ(eval.GetPlayerPosition(world.get(), n), Vector2d()) << n;
    EXPECT_FALSE(eval.IsInPlayerArea(world.get(), n, {})) << n;
  }
  EXPECT_EQ(eval.GetPlayerPosition(world.get(), 2), eval.RealPositions[1].Pos);

  // Player, watch, watched. Nobody is 10's third: that is not 8, who has no number either.
  constexpr int ROWS[][3] = {{4, 0, 2},  {4, 1, 5},   {4, 2, 7},   {5, 2, -1},  {10, 1, 11},
                             {2, 0, -1}, {10, 2, -1}, {4, -1, -1}, {11, 0, -1}, {4, 3, -1}};
  for (const auto& [n, k, watched] : ROWS)
    EXPECT_EQ(eval.GetPlayerWatchNo(world.get(), n, k), watched) << n << " " << k;
}

TEST_F(Positions, OfEveryFormationKeepLinesAndDistancesAndAreMirroredOnTheOtherWing) {
  constexpr std::size_t PARTNER[] = {0, 0, 5, 4, 3, 2, 7, 6, 9, 8, 11, 10};
  constexpr int LINE[] = {0, 0, 1, 1, 1, 1, 2, 2, 2, 2, 3, 3};
  for (int shot = 0; shot < 48; ++shot) {
    constexpr double X[] = {-52.5, -44.25, -30.0, -19.5, -5.0, 10.0, 30.0, 52.5};
    eval.defNo = eval.offNo = shot / 16;
    std::array<Vector2d, 12> team[2];
    for (const std::size_t side : {0U, 1U}) {
      world->ball.pos = {X[shot % 8], (shot % 16 < 8 ? 10.0 : 34.0) * (side == 0 ? 1 : -1)};
      runCycles(220);
      for (std::size_t n = 2; n <= 11; ++n) {
        team[side][n] = eval.GetPlayerPosition(world.get(), static_cast<int>(n));
      }
    }
    for (std::size_t n = 2; n <= 11; ++n) {
      const Vector2d other = team[1][PARTNER[n]];
      EXPECT_LT((team[0][n] - Vector2d(other.x, -other.y)).getLength(), 1e-9)
          << n << " of " << shot;
      for (std::size_t m = n + 1; m <= 11; ++m) {
        EXPECT_GE((team[0][n] - team[0][m]).getLength(), 5) << n << ", " << m << " of " << shot;
        EXPECT_TRUE(LINE[n] == LINE[m] || team[0][n].x < team[0][m].x) << n << " of " << shot;
      }
    }
  }
}

TEST_F(Positions, EveryFormationIsReadAndAWrongChoiceReported) {
  EXPECT_EQ(eval.DefFormations[1][0].FMod, Vector2d(-2, 0.15));
  EXPECT_EQ(eval.OffFormations[2][4].Pos, Vector2d(100, 0.42));
  StderrCapture errors;
  setEntry("StartFormationDef", "2");
  setEntry("StartFormationOff", "3");
  const PositionEval other(nullptr, nullptr);
  EXPECT_EQ(other.defNo, 2);
  EXPECT_EQ(other.offNo, 0);
  EXPECT_EQ(errors.take(), "WARNING: StartFormationOff is 3, not 0, 1 or 2; 0 is taken.\n");
}

TEST_F(Positions, NoBallMakesAnAreaThatIsNoNumber) {
  for (const double x : {-1e308, -44.25, 8.0, 1e308, double{NAN}}) {
    for (int mode = PLAY_MODE_UNKNOWN; mode <= PLAY_MODE_PENALTY_SCORE_THEM; ++mode) {
      world->playMode = static_cast<play_mode>(mode);
      world->ball.pos = {x, -x};
      runCycles(1);
      Vector2d lo, hi;
      eval.GetPlayerArea(world.get(), 10, lo, hi);
      ASSERT_TRUE(std::isfinite(lo.x + lo.y + hi.x + hi.y)) << x << " in mode " << mode;
    }
  }
}

TEST(GoalShotSettings, GoalAndLongestShotFollowTheServer) {
  Config::readFile(SHIPPED_CONFIG);
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
