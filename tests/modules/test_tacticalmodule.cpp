// Roles, and what the opponents' motion tells about their types.
#include "tacticalmodule.h"

#include <gtest/gtest.h>

#include "support/world.h"

namespace vok::test {
namespace {

class Tactics : public testing::Test {
 protected:
  Tactics() {
    MAXPOWER = 50;
    MINPOWER = 100;  // the greater one is a full dash
    constexpr double TYPES[3][4] = {
        {1.0, 5, 0.006, 0.3}, {1.25, 179, 0.0075, 0.4}, {1.5, 180, 0.009, 0.5}};
    for (std::size_t id = 0; id < 3; ++id) {
      WPlayerType& type = world->playerType.at(id);
      type.playerSpeedMax = TYPES[id][0];
      type.inertiaFactor = TYPES[id][1];
      type.dashPowerRate = TYPES[id][2];
      type.playerDecay = TYPES[id][3];
    }
    tactical.feedbackWorld();
  }

  // When an opponent has moved by so much in so many cycles: whether it is impossible that it has
  // each of the types ('-'), sure ('!') or open ('.').
  std::string move(int opponent, double way, int cycles = 1) {
    world->time += cycles;
    world->otherTeam[opponent].pos.x += way;
    tactical.feedbackWorld();
    std::string beliefs;
    for (const auto& belief : tactical.playerTypeData[opponent]) beliefs += "-!."[belief.state];
    return beliefs;
  }

  const std::unique_ptr<Worldmodel> world = coachsWorld(3);
  TacticalModule tactical{world.get(), nullptr};
};

TEST_F(Tactics, RolesFollowFromTheTacticalNumber) {
  world->adjustTacticalNumbers(3);  // of shirts 3, 1, 2, 4, 5, ...
  std::string roles;
  for (int n = 1; n <= 11; ++n) {
    roles += tactical.ourTeamDefender(n) ? 'D' : tactical.ourTeamOffender(n) ? 'F' : '.';
    roles += tactical.ourTeamDefMidfield(n) ? 'd' : tactical.ourTeamOffMidfield(n) ? 'o' : '.';
    EXPECT_EQ(tactical.ourTeamMidfield(n), roles.back() != '.') << n;
  }
  EXPECT_EQ(roles, "D.D...D.D..d.d.o.oF.F.");
  setEntry("ourDefMidfield", "2147483647");
  EXPECT_TRUE(TacticalModule(world.get(), nullptr).ourTeamMidfield(11));
}

// Type by type: top speed 1, 1.25, 1.5; inertia 5, 179, 180; dash rate 0.006, 0.0075, 0.009;
// decay 0.3, 0.4, 0.5. An opponent who looked in the direction of 3 rad moves along x: way in
// metres, speeds at both views, new direction; beliefs. The rows that bar a single type meet type
// 1's bound exactly.
TEST_F(Tactics, MotionExcludesTheTypesThatItContradictsUntilOneIsLeft) {
  constexpr std::tuple<double, double, double, double, const char*> ROWS[] = {
      {0, 0, 0, 3, "..."},          // nothing moves
      {1.25, 1.25, 100, 3, "-.."},  // runs 1.25 m
      {1, 1, 100, 2, "..-"},        // turns by 1 at speed 1: (180 / 1 - 1) / 1
      {0.5, -0.25, 100, 3, "-.."},  // gains 0.75 m: 0.75 / 100
      {0.5, 0.5, 1.25, 3, "-.."},   // 0.5 m with a speed of 1.25 left: 0.4
      {0.5, 0.5, 0, 3, "---"},      // no speed left after a move
      {1.5, 1.5, 100, 3, "--!"},    // runs 1.5 m
  };
  for (const auto& [way, oldSpeed, newSpeed, bodyDir, expected] : ROWS) {
    tactical = TacticalModule(world.get(), nullptr);
    WPlayer& player = world->otherTeam[5];
    player.v = {oldSpeed, 0};
    player.bodyDir = 3;
    tactical.feedbackWorld();
    player.v = {newSpeed, 0};
    player.bodyDir = bodyDir;
    EXPECT_EQ(move(5, way), expected) << way << " m, " << newSpeed << " left, to " << bodyDir;
  }
  EXPECT_EQ(tactical.playerType[5], 2);
}

TEST_F(Tactics, OnlyUninterruptedPlayRefinesAndTheSnapshotIsAlwaysOfTheCycleBefore) {
  EXPECT_EQ(move(9, 40, 2), "...") << "a cycle was skipped";
  world->playMode = PLAY_MODE_FREE_KICK_US;
  EXPECT_EQ(move(9, 40), "...") << "play was stopped";
  world->playMode = PLAY_MODE_PLAY_ON;
  EXPECT_EQ(move(9, 0), "...") << "not moved since the stopped cycle";
}

TEST_F(Tactics, ASubstitutionForgetsOneOpponentsType) {
  EXPECT_EQ(move(7, 40), "---");
  tactical.playerType[7] = 2;
  world->otherSubs = {{9, 0}, {7, 0}, {9, 0}};
  world->numOtherSubs = 4;  // the last one at the begin of the ring, the oldest, 7's, behind it
  EXPECT_EQ(move(7, 40), "...") << "the new one is not examined in this cycle";
  EXPECT_EQ(move(7, 40), "---") << "but in the next one";
  world->numOtherSubs = 5;  // 7's is the last one
  EXPECT_EQ(move(7, 40), "...");
}

}  // namespace
}  // namespace vok::test
