// The statistics of the opponents' positions.
#include "Team.h"

#include <gtest/gtest.h>

#include <array>
#include <utility>

#include "support/world.h"

namespace vok::test {
namespace {

// Opponents 2 to 5 on a rectangle around (10, 0) with standard deviations 4 and 2; the goalie and
// one who was seen too long ago stand elsewhere.
class Opponents : public testing::Test {
 protected:
  Opponents() {
    world->otherGoalieNo = 1;
    put(1, {50, 0}, 0);
    put(6, {-40, 30}, 20);
    stand({14, 14, 6, 6});
  }

  void put(int n, Vector2d pos, int age) {
    world->otherTeam[n].pos = pos;
    world->otherTeam[n].age = age;
  }

  void stand(const std::array<double, 4>& x, int age = 19) {
    for (int i = 0; i < 4; ++i)
      put(2 + i, {x.at(static_cast<std::size_t>(i)), i % 2 == 0 ? 2.0 : -2.0}, age);
  }

  void update(long upTo) {
    while (team.aCount < upTo) team.Update();
  }

  const std::unique_ptr<Worldmodel> world = shippedWorld();
  Team team{world.get()};
};

TEST_F(Opponents, CentreAndSpreadLeaveOutTheGoalieAndTheLongUnseen) {
  for (const int age : {19, 20}) {  // when nobody is seen they stay
    stand({14, 14, 6, 6}, age);
    team.CalcTeamCOG();
    EXPECT_EQ(team.GetTeamCOG(), Vector2d(10, 0));
    EXPECT_EQ(team.GetTeamVar(), Vector2d(4, 2));
  }
}

TEST_F(Opponents, ATeamWithoutAUsableSpreadIsNotCounted) {
  stand({12.3, 12.3, 12.3, 0});
  world->otherTeam[5].age = 20;
  team.Update();
  EXPECT_EQ(team.GetTeamVar().x, 0) << "the variance of these three rounds to below zero";
  stand({1.4e154, 14, 6, 6});  // whose square is too great, but not that of the centre
  team.Update();
  EXPECT_EQ(team.aCount, 0);
}

TEST_F(Opponents, MeansAndSpreadsNeedThreeSamplesOfAnOpponent) {
  update(2);
  EXPECT_EQ(team.GetaPos(2), Vector2d());
  update(3);
  EXPECT_EQ(team.GetaPos(2), Vector2d(14, 2));
  stand({6, 14, 14, 6});
  update(6);
  EXPECT_EQ(team.GetaPos(2), Vector2d(10, 2));
  EXPECT_EQ(team.GetaVar(2), Vector2d(2, 0)) << "the root of variance 1 times spread 4";
  team.NPos[0][2] = 1;
  EXPECT_EQ(team.GetaPos(2), Vector2d()) << "seen once is not known";
  StderrCapture errors;
  EXPECT_EQ(team.GetaPos(12), Vector2d());
  EXPECT_EQ(errors.take(), "Team::GetPos invalid player no : 12\n");
}

TEST_F(Opponents, TheMeanIsThatOfTheLast50To100Updates) {
  // Opponent 2 is at 14 until update 49, at 6 from then on; y never changes.
  constexpr std::pair<long, double> ROWS[] = {{49, 14},
                                              {50, 10 + 4.0 * (49 - 1) / 50},
                                              {99, 10 + 4.0 * (49 - 50) / 99},
                                              {100, 6},
                                              {150, 6}};
  for (const auto& [updates, meanX] : ROWS) {
    update(updates);
    EXPECT_NEAR(team.GetaPos(2).x, meanX, 1e-9) << updates;
    EXPECT_EQ(team.GetaVar(2).y, 0) << updates;
    stand({6, 14, 14, 6});
  }
}

TEST_F(Opponents, TheRearDefendersAreTheTwoFarthestUp) {
  // The x of opponents 2 to 5, and the two.
  using Two = std::pair<int, int>;
  const std::pair<std::array<double, 4>, Two> rows[] = {
      {{5, 9, 1, 2}, {3, 2}}, {{9, 9, 1, 2}, {2, 3}}, {{1, 9, 5, 5}, {3, 4}}};
  for (const auto& [x, rear] : rows) {
    team = Team(world.get());
    stand(x);
    for (const int updates : {2, 3}) {  // seen twice is not enough
      Two found = {3, 9};
      update(updates);
      team.GetDefensePlayer(found.first, found.second);
      EXPECT_EQ(found, updates == 2 ? Two(0, 0) : rear);
    }
  }
}

}  // namespace
}  // namespace vok::test
