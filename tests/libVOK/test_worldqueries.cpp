#include <gtest/gtest.h>

#include <numbers>

#include "Config.h"
#include "worldmodel.h"

namespace vok {
namespace {

constexpr double PI = std::numbers::pi;

/// A world in which nobody was ever seen.
class WorldQueries : public testing::Test {
 protected:
  static Worldmodel emptyWorld() {
    setEntry("world_maxPlayersOurTeam", "11");
    setEntry("world_maxPlayersOtherTeam", "11");
    return Worldmodel(nullptr);
  }

  static void put(WPlayer& player, Vector2d pos, int age) {
    player.pos = pos;
    player.age = age;
  }

  Worldmodel world = emptyWorld();
};

TEST_F(WorldQueries, RankPlayersByDistanceAndThenByNumber) {
  put(world.ourTeam[0], {0, 0}, 0);  // no player
  put(world.ourTeam[2], {3, 4}, 1);
  put(world.ourTeam[7], {-5, 0}, 1);  // as far as number 2
  put(world.ourTeam[9], {0, 1}, 1);
  put(world.ourTeam[11], {0, 0}, 2);  // too old
  const int expected[] = {-1, 9, 2, 7, -1};
  for (int index = 0; index <= 4; ++index) {
    EXPECT_EQ(world.ourTeamClosestTo({0, 0}, 1, index), expected[index]) << index;
  }
  EXPECT_EQ(world.ourTeamClosestTo({0, 0}, NEVER, 12), -1);
  EXPECT_EQ(world.otherTeamClosestTo({0, 0}, 1, 1), -1);
}

TEST_F(WorldQueries, CountThePlayersInACorridor) {
  put(world.ourTeam[0], {5, 0}, 0);
  put(world.ourTeam[3], {5, 0.9}, 0);
  put(world.ourTeam[4], {5, -1.1}, 0);   // beside the band
  put(world.ourTeam[11], {10.5, 0}, 0);  // around the target
  put(world.otherTeam[5], {5, 0}, 3);
  EXPECT_EQ(world.ourTeamInCorridor({0, 0}, {10, 0}, 2, PI / 4, 0), 2);
  EXPECT_EQ(world.otherTeamInCorridor({0, 0}, {10, 0}, 2, PI / 4, 3), 1);
  EXPECT_EQ(world.otherTeamInCorridor({0, 0}, {10, 0}, 2, PI / 4, 2), 0);
}

TEST_F(WorldQueries, OurOffsideLineFollowsTheSecondLastOpponentOrTheBall) {
  world.playMode = PLAY_MODE_PLAY_ON;
  world.ball.pos = {-10, 0};
  EXPECT_EQ(world.ourOffsideLine(4), 0);
  world.ball.pos = {10, 0};
  put(world.otherTeam[1], {50, 0}, 0);
  put(world.otherTeam[2], {40, 0}, 3);
  put(world.otherTeam[3], {-20, 0}, 0);
  world.otherTeam[2].vmax = 1.5;
  // It has run for half the allowed age, two cycles at most. The ball may lie beyond.
  EXPECT_EQ(world.ourOffsideLine(2), 10);
  EXPECT_EQ(world.ourOffsideLine(3), 38.5);
  EXPECT_EQ(world.ourOffsideLine(10), 37);
  world.otherTeam[2].age = 1;  // and no longer than unseen
  EXPECT_EQ(world.ourOffsideLine(10), 38.5);
  world.playMode = PLAY_MODE_KICK_OFF_THEM;
  EXPECT_EQ(world.ourOffsideLine(10), 0);
}

TEST_F(WorldQueries, OtherOffsideLineFollowsOurSecondLastOrTheBall) {
  world.playMode = PLAY_MODE_PLAY_ON;
  world.ball.pos = {20, 0};
  put(world.ourTeam[1], {-50, 0}, 0);
  EXPECT_EQ(world.otherOffsideLine(4), 0);
  put(world.ourTeam[2], {-40, 0}, 4);  // not moved on
  put(world.ourTeam[3], {-30, 0}, 0);
  EXPECT_EQ(world.otherOffsideLine(4), -40);
  EXPECT_EQ(world.otherOffsideLine(3), -30);
  world.ball.pos = {-45, 0};
  EXPECT_EQ(world.otherOffsideLine(4), -45);
}

TEST_F(WorldQueries, OtherOffsideLineKnowsTheSetPlays) {
  const struct {
    play_mode playMode;
    double ballX;
    double line;
  } cases[] = {
      {PLAY_MODE_KICK_IN_US, -20, -30},     {PLAY_MODE_FREE_KICK_US, 15, 0},
      {PLAY_MODE_KICK_IN_THEM, -40, -52.5}, {PLAY_MODE_FREE_KICK_THEM, 15, -5},
      {PLAY_MODE_CORNER_KICK_US, -20, 0},   {PLAY_MODE_CORNER_KICK_THEM, -52, 0},
      {PLAY_MODE_GOAL_KICK_THEM, -20, 0},   {PLAY_MODE_GOAL_KICK_US, -50, -36},
      {PLAY_MODE_BEFORE_KICK_OFF, -3, -3},
  };
  for (const auto& c : cases) {
    world.playMode = c.playMode;
    world.ball.pos = {c.ballX, 30};
    EXPECT_EQ(world.otherOffsideLine(0), c.line) << c.playMode;
  }
}

TEST_F(WorldQueries, ADirectionIsAsOldAsItsFreshestLook) {
  EXPECT_EQ(world.dirAge(0.5), NEVER);
  world.vDir[3] = PI;
  world.vAngle[3] = Worldmodel::getViewAngle(VIEW_WIDTH_NORMAL);
  world.vAge[3] = 5;
  world.vDir[9] = -3.0;
  world.vAngle[9] = Worldmodel::getViewAngle(VIEW_WIDTH_NARROW);
  world.vAge[9] = 2;
  EXPECT_EQ(world.dirAge(3.1), 2);  // across the seam at pi
  EXPECT_EQ(world.dirAge(2.5), 5);
  EXPECT_EQ(world.dirAge(2.2), NEVER);
}

TEST_F(WorldQueries, LookingAroundEndsWithNineFreshDirectionsOfSixteen) {
  EXPECT_FALSE(world.lookAroundFinished());
  world.my.bodyDir = 3.0;
  world.vDir[0] = world.my.bodyDir;
  world.vAge[0] = 7;
  world.vAngle[0] = 4.1 * PI / 8;
  EXPECT_TRUE(world.lookAroundFinished());
  world.vAngle[0] = 3.9 * PI / 8;  // leaves seven
  EXPECT_FALSE(world.lookAroundFinished());
  world.vAngle[0] = PI;
  world.vAge[0] = 8;
  EXPECT_FALSE(world.lookAroundFinished());
}

}  // namespace
}  // namespace vok
