// The statistics of the opponents' positions.
#include "Team.h"

#include <gtest/gtest.h>

#include <cmath>
#include <utility>

#include "support/world.h"

namespace vok::test {
namespace {

class Opponents : public testing::Test {
 protected:
  void put(int n, Vector2d pos, int age = 19) {
    world->otherTeam[n].pos = pos;
    world->otherTeam[n].age = age;
  }

  // Opponents 2 to 5 on a rectangle around (10, 0) with standard deviations 4 and 2: 2 in front or
  // behind.
  void stand(double x) {
    for (int n = 2; n <= 5; ++n) put(n, {n % 4 < 2 ? 20 - x : x, n % 2 == 0 ? 2.0 : -2.0});
  }

  const std::unique_ptr<Worldmodel> world = shippedWorld();
  Team team{world.get()};
};

TEST_F(Opponents, ATeamWithoutAUsableSpreadIsNotCounted) {
  for (int n = 2; n <= 4; ++n) put(n, {12.3, 2.0 * n});
  team.Update();
  EXPECT_EQ(team.GetTeamVar().x, 0) << "the variance of these three rounds to below zero";
  stand(14);
  put(2, {1.4e154, 2});  // whose square is too great, but not that of the centre
  team.Update();
  EXPECT_EQ(team.aCount, 0);
}

TEST_F(Opponents, TheMeanIsThatOfTheLast50To100Updates) {
  // Opponent 2 is at 14 until update 49, at 6 from then on; y never changes.
  constexpr std::pair<long, double> ROWS[] = {
      {2, 0},   {3, 14}, {49, 14}, {50, 10 + 4.0 * (49 - 1) / 50}, {99, 10 + 4.0 * (49 - 50) / 99},
      {100, 6}, {150, 6}};
  for (const auto& [updates, meanX] : ROWS) {
    stand(updates < 50 ? 14 : 6);
    while (team.aCount < updates) team.Update();
    EXPECT_NEAR(team.GetaPos(2).x, meanX, 1e-9) << updates;
    EXPECT_EQ(team.GetaVar(2).y, 0) << updates;
  }
  std::pair<int, int> rear;
  team.GetDefensePlayer(rear.first, rear.second);
  EXPECT_EQ(rear, std::pair(4, 5)) << "both at 14";
  StderrCapture errors;
  EXPECT_EQ(team.GetaPos(12), Vector2d());
  EXPECT_EQ(team.GetaVar(-1), Vector2d());
  EXPECT_EQ(errors.take(),
            "Team::GetPos invalid player no : 12\nTeam::GetVar invalid player no : -1\n");
}

// Eleven players who move about, unseen for a while now and then: all results of all updates.
TEST_F(Opponents, StatisticsAreTheSameAsEver) {
  world->otherGoalieNo = 1;
  double sum = 0;
  for (int update = 0; update < 170; ++update) {
    for (int n = 1; n <= 11; ++n) {
      put(n, {20 + 3 * n + 9 * std::sin(0.3 * n * update), 30 * std::cos(n + 0.05 * update)},
          (n + update) % 33);
    }
    team.Update();
    std::pair<int, int> rear;
    team.GetDefensePlayer(rear.first, rear.second);
    sum += rear.first + 12 * rear.second + team.GetTeamCOG().x + 3 * team.GetTeamVar().y;
    for (int k = 0; k <= 11; ++k) {
      const Vector2d result = team.GetaPos(k) + 3 * team.GetaVar(k);
      sum += (k + 1) * (result.x + 5 * result.y);
    }
  }
  EXPECT_NEAR(sum, 1244869.8624246076, 1e-5);
}

}  // namespace
}  // namespace vok::test
