#include <gtest/gtest.h>

#include <tuple>

#include "support/world.h"

namespace vok::test {
namespace {

void put(WPlayer& player, Vector2d pos, int age) {
  player.pos = pos;
  player.age = age;
}

class WorldQueries : public testing::Test {
 protected:
  Worldmodel world = newWorld();
};

TEST_F(WorldQueries, RankAndCountThePlayersThatAreFreshEnough) {
  put(world.ourTeam[0], {0, 0}, 0);  // no player
  put(world.ourTeam[2], {3, 4}, 1);
  put(world.ourTeam[7], {-5, 0}, 1);  // as far as number 2
  put(world.ourTeam[9], {0, 1}, 1);
  put(world.ourTeam[11], {0, 0}, 2);  // too old
  int index = 0;
  for (const int number : {-1, 9, 2, 7, -1})
    EXPECT_EQ(world.ourTeamClosestTo({0, 0}, 1, index++), number);
  EXPECT_EQ(world.ourTeamInCorridor({-6, 0}, {6, 0}, 2, PI / 4, 1), 2);
  // In the disc around the target, but far outside the cone from it.
  EXPECT_EQ(world.ourTeamInCorridor({-6, 4}, {3, 5}, 3, 0.01, 1), 1);
  EXPECT_EQ(world.ourTeamInCorridor({3, 5}, {-6, 4}, 3, 0.01, 1), 0);
}

TEST_F(WorldQueries, OurOffsideLineFollowsTheSecondLastOpponentOrTheBall) {
  world.ball.pos = {10, 0};
  put(world.otherTeam[1], {50, 0}, 0);
  put(world.otherTeam[2], {40, 0}, 3);
  world.otherTeam[2].vmax = 1.5;
  // It has run for half the allowed age, two cycles at most. The ball may lie beyond.
  EXPECT_EQ(world.ourOffsideLine(2), 10);
  EXPECT_EQ(world.ourOffsideLine(3), 38.5);
  EXPECT_EQ(world.ourOffsideLine(10), 37);
  world.otherTeam[2].age = 1;  // and no longer than unseen
  EXPECT_EQ(world.ourOffsideLine(10), 38.5);
  for (const play_mode mode : {PLAY_MODE_BEFORE_KICK_OFF, PLAY_MODE_KICK_OFF_US,
                               PLAY_MODE_KICK_OFF_THEM, PLAY_MODE_GOAL_US, PLAY_MODE_GOAL_THEM}) {
    world.playMode = mode;
    EXPECT_EQ(world.ourOffsideLine(10), 0) << mode;
  }
}

TEST_F(WorldQueries, OtherOffsideLineKnowsTheSetPlaysAndElseOurSecondLastOrTheBall) {
  put(world.ourTeam[1], {-50, 0}, 0);
  put(world.ourTeam[2], {-40, 0}, 4);  // not moved on
  const std::tuple<play_mode, double, double> rows[] = {
      // Play mode, x of the ball, line.
      {PLAY_MODE_PLAY_ON, -20, -40},        {PLAY_MODE_PLAY_ON, -45, -45},
      {PLAY_MODE_KICK_IN_US, -20, -30},     {PLAY_MODE_FREE_KICK_THEM, -20, -40},
      {PLAY_MODE_KICK_IN_THEM, -40, -52.5}, {PLAY_MODE_FREE_KICK_THEM, 25, 0},
      {PLAY_MODE_CORNER_KICK_US, -20, 0},   {PLAY_MODE_GOAL_KICK_US, -20, -36}};
  for (const auto& [playMode, ballX, line] : rows) {
    world.playMode = playMode;
    world.ball.pos.x = ballX;
    EXPECT_EQ(world.otherOffsideLine(4), line) << playMode << " " << ballX;
  }
}

TEST_F(WorldQueries, ADirectionIsAsOldAsTheFreshestLookWhoseConeHeldIt) {
  // Of a look at pi, across which the angles jump.
  for (const auto& [width, half] : {std::pair(VIEW_WIDTH_NARROW, PI / 8),
                                    {VIEW_WIDTH_NORMAL, PI / 4},
                                    {VIEW_WIDTH_WIDE, PI / 2}}) {
    world.vDir[9] = PI;
    world.vAngle[9] = Worldmodel::getViewAngle(width);
    world.vAge[9] = 2;
    EXPECT_EQ(world.dirAge(0.01 + half - PI), NEVER) << width;
    EXPECT_EQ(world.dirAge(PI - half + 0.01), 2) << width;
  }
}

TEST_F(WorldQueries, LookingAroundEndsWithNineFreshDirectionsOfSixteen) {
  world.my.bodyDir = 3;
  world.vDir[0] = world.my.bodyDir + 7 * PI / 8;  // the last of them
  world.vAge[0] = 7;
  for (const double steps : {4.1, 3.9}) {
    world.vAngle[0] = steps * PI / 8;
    EXPECT_EQ(world.lookAroundFinished(), steps > 4) << steps;
  }
}

}  // namespace
}  // namespace vok::test
