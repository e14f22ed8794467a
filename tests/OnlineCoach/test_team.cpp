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

  const std::unique_ptr<Worldmodel> world = coachsWorld();
  Team team{world.get()};
};

TEST_F(Opponents, ATeamWithoutAUsableSpreadIsNotCounted) {
  for (int n = 2; n <= 4; ++n) put(n, {12.3, 2.0 * n});
  team.Update();
  EXPECT_EQ(team.GetTeamVar().x, 0) << "the variance of these three rounds to below zero";
  put(3, {0, 2});
  put(2, {1.4e154, 2});  // whose square is too great, but not that of the centre
  team.Update();
  EXPECT_EQ(team.aCount, 0);
}

TEST_F(Opponents, AnInvalidNumberIsReported) {
  StderrCapture errors;
  EXPECT_EQ(team.GetaPos(12), Vector2d());
  EXPECT_EQ(team.GetaVar(-1), Vector2d());
  EXPECT_EQ(errors.take(),
            "Team::GetPos invalid player no : 12\nTeam::GetVar invalid player no : -1\n");
}

// Eleven players who move about, two of them together, unseen for a while now and then: all results
// of all updates.
TEST_F(Opponents, StatisticsAreTheSameAsEver) {
  world->otherGoalieNo = 1;
  double sum = 0;
  for (int update = 0; update < 170; ++update) {
    for (int n = 1; n <= 11; ++n) {
      const int k = n == 11 ? 10 : n;
      put(n, {20 + 3 * k + 9 * std::sin(0.3 * k * update), 30 * std::cos(k + 0.05 * update)},
          (k + update) % 33);
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
  EXPECT_NEAR(sum, 1178901.954302235, 1e-5);
}

}  // namespace
}  // namespace vok::test
