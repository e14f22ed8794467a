// The statistics of the opponents' positions.
#include <gtest/gtest.h>

#include <cmath>
#include <memory>

#include "Config.h"
#include "Team.h"
#include "support/server.h"

namespace vok::test {
namespace {

// Opponents 2 to 5 on a rectangle around (10, 0) with standard deviations 4 and 2; the goalie and
// one who was seen too long ago stand elsewhere.
class Opponents : public testing::Test {
 protected:
  Opponents() {
    Config::readFile(shippedConfig);
    world = std::make_unique<Worldmodel>(nullptr);
    world->otherGoalieNo = 1;
    put(1, {50, 0}, 0);
    put(6, {-40, 30}, 20);
    stand(14, 14, 6, 6);
    team = std::make_unique<Team>(world.get());
  }

  void put(std::size_t n, Vector2d pos, int age) {
    world->otherTeam.at(n).pos = pos;
    world->otherTeam.at(n).age = age;
  }

  void stand(double x2, double x3, double x4, double x5) {
    put(2, {x2, 2}, 0);
    put(3, {x3, -2}, 19);
    put(4, {x4, 2}, 0);
    put(5, {x5, -2}, 0);
  }

  void update(int times) {
    for (int i = 0; i < times; ++i) team->Update();
  }

  std::unique_ptr<Worldmodel> world;
  std::unique_ptr<Team> team;
};

TEST_F(Opponents, CentreAndSpreadLeaveOutTheGoalieAndTheLongUnseen) {
  team->CalcTeamCOG();
  EXPECT_EQ(team->GetTeamCOG(), Vector2d(10, 0));
  EXPECT_EQ(team->GetTeamVar(), Vector2d(4, 2));
  for (WPlayer& player : world->otherTeam) player.age = 20;
  team->CalcTeamCOG();
  EXPECT_EQ(team->GetTeamCOG(), Vector2d(10, 0)) << "nobody seen changes nothing";
}

TEST_F(Opponents, ATeamWithoutSpreadIsNotCounted) {
  stand(33.3, 33.3, 33.3, 33.3);  // whose variance can come out below zero
  update(3);
  EXPECT_NEAR(team->GetTeamVar().x, 0, 1e-4);
  EXPECT_EQ(team->aCount, 0);
  stand(1e300, 14, 6, 6);
  update(1);
  EXPECT_EQ(team->aCount, 0) << "nor one whose spread is beyond all numbers";
}

TEST_F(Opponents, MeansAndSpreadsNeedThreeSamples) {
  update(2);
  EXPECT_EQ(team->GetaPos(2), Vector2d());
  update(1);
  EXPECT_EQ(team->GetaPos(2), Vector2d(14, 2));
  EXPECT_EQ(team->GetaPos(6), Vector2d());
  stand(6, 14, 14, 6);
  update(3);
  EXPECT_EQ(team->GetaPos(2), Vector2d(10, 2));
  EXPECT_EQ(team->GetaVar(2), Vector2d(2, 0)) << "the root of variance 1 times spread 4";
  EXPECT_EQ(team->GetPos(2), Vector2d());
  team->NPos[0][2] = 1;
  EXPECT_EQ(team->GetaPos(2), Vector2d()) << "seen once is not known";
}

TEST_F(Opponents, TheMeanIsThatOfTheLast50To100Updates) {
  const struct {
    int updates;
    int bankRead;
    long samples[2];
    double meanX;  // opponent 2 is at 14 until update 49, at 6 from then on
  } rows[] = {{49, 0, {49, 49}, 14},
              {50, 1, {1, 50}, 10 + 4.0 * (49 - 1) / 50},
              {51, 1, {2, 51}, 10 + 4.0 * (49 - 2) / 51},
              {99, 1, {50, 99}, 10 + 4.0 * (49 - 50) / 99},
              {100, 0, {51, 1}, 6},
              {150, 1, {1, 51}, 6}};
  for (const auto& row : rows) {
    update(row.updates - static_cast<int>(team->aCount));
    EXPECT_EQ(team->afor, row.bankRead) << row.updates;
    EXPECT_EQ(team->aNPos[0][2], row.samples[0]) << row.updates;
    EXPECT_EQ(team->aNPos[1][2], row.samples[1]) << row.updates;
    EXPECT_NEAR(team->GetaPos(2).x, row.meanX, 1e-9) << row.updates;
    if (row.updates == 49) stand(6, 14, 14, 6);
  }
}

TEST_F(Opponents, TheRearDefendersAreTheTwoFarthestUp) {
  const struct {
    double x[4];  // of opponents 2 to 5
    int first;
    int second;
  } rows[] = {{{5, 9, 1, 2}, 3, 2},
              {{9, 9, 1, 2}, 2, 3},
              {{1, 2, 5, 9}, 5, 4},
              {{1, 9, 5, 5}, 3, 4},
              {{-30, -31, -50, -40}, 2, 3}};
  for (const auto& row : rows) {
    Team fresh(world.get());
    stand(row.x[0], row.x[1], row.x[2], row.x[3]);
    int first = 3;
    int second = 9;
    fresh.Update();
    fresh.Update();
    fresh.GetDefensePlayer(first, second);
    EXPECT_EQ(first + second, 0) << "seen twice is not enough";
    fresh.Update();
    fresh.GetDefensePlayer(first, second);
    EXPECT_EQ(first, row.first);
    EXPECT_EQ(second, row.second);
  }
}

TEST_F(Opponents, NumbersOfNoOpponentAreReported) {
  StderrCapture errors;
  const struct {
    Vector2d (Team::*get)(int) const;
    const char* line;
  } rows[] = {{&Team::GetPos, "Team::GetPos invalid player no : "},
              {&Team::GetaPos, "Team::GetPos invalid player no : "},
              {&Team::GetVar, "Team::GetVar invalid player no : "},
              {&Team::GetaVar, "Team::GetVar invalid player no : "}};
  for (const auto& row : rows) {
    for (const int n : {12, -1}) {
      EXPECT_EQ(((*team).*row.get)(n), Vector2d());
      EXPECT_EQ(errors.take(), row.line + std::to_string(n) + "\n");
    }
  }
}

}  // namespace
}  // namespace vok::test
