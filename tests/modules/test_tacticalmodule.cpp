// Roles, and what the opponents' motion tells about their types.
#include "tacticalmodule.h"

#include <gtest/gtest.h>

#include <string>

#include "support/world.h"

namespace vok::test {
namespace {

// One cycle of an opponent along x: way in metres, speeds at both views, turn in radians; and
// whether each type is then impossible ('-'), sure ('!') or open ('.').
struct Motion {
  const char* name;
  double way, oldSpeed, newSpeed, turnFrom, turnTo;
  const char* beliefs;
};

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
  }

  // An opponent's beliefs when it has moved by so much in so many cycles.
  std::string move(int opponent, double way, int cycles = 1) {
    world->time += cycles;
    world->otherTeam[opponent].pos.x += way;
    tactical.feedbackWorld();
    return beliefs(opponent);
  }

  std::string observe(int opponent, const Motion& motion) {
    WPlayer& player = world->otherTeam[opponent];
    player.v = {motion.oldSpeed, 0};
    player.bodyDir = motion.turnFrom;
    tactical.feedbackWorld();
    player.v = {motion.newSpeed, 0};
    player.bodyDir = motion.turnTo;
    return move(opponent, motion.way);
  }

  std::string beliefs(int opponent) const {
    std::string text;
    for (const PlayerTypeData& belief : tactical.playerTypeData[opponent]) {
      text += "-!."[belief.state];
    }
    return text;
  }

  const std::unique_ptr<Worldmodel> world = shippedWorld(3);
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
  setEntry("ourDefenders", "-9");
  for (const char* midfield : {"ourDefMidfield", "ourOffMidfield"})
    setEntry(midfield, "2147483647");
  const TacticalModule odd(world.get(), nullptr);
  world->ourTeam[2].tacticalNo = -1;
  EXPECT_FALSE(odd.ourTeamMidfield(2));
  EXPECT_TRUE(odd.ourTeamMidfield(11));
}

// Type by type: top speed 1, 1.25, 1.5; inertia 5, 179, 180; dash rate 0.006, 0.0075, 0.009;
// decay 0.3, 0.4, 0.5. The rows that bar a single type meet type 1's bound exactly.
const Motion MOTIONS[] = {
    {"nothing moves", 0, 0, 0, 0, 0, "..."},
    {"turns on the spot", 0, 0, 0, 0, 3, "..."},
    {"runs 1.25 m", 1.25, 1.25, 100, 0, 0, "-.."},
    {"turns by 1 at speed 1: (180 / 1 - 1) / 1", 1, 1, 100, 0, 1, "..-"},
    {"turns by 0.28 across the back: 634", 1, 1, 100, 3, -3, "..."},
    {"gains 0.75 m: 0.75 / 100", 0.5, -0.25, 100, 0, 0, "-.."},
    {"0.5 m with a speed of 1.25 left: 0.4", 0.5, 0.5, 1.25, 0, 0, "-.."},
    {"no speed left after a move", 0.5, 0.5, 0, 0, 0, "---"},
    {"runs 1.5 m", 1.5, 1.5, 100, 0, 0, "--!"},
};

TEST_F(Tactics, MotionExcludesTheTypesThatItContradictsUntilOneIsLeft) {
  for (const Motion& motion : MOTIONS) {
    tactical = TacticalModule(world.get(), nullptr);
    EXPECT_EQ(observe(5, motion), motion.beliefs) << motion.name;
    EXPECT_EQ(beliefs(6), "...") << motion.name;
  }
  EXPECT_EQ(observe(11, MOTIONS[2]), "-..");
  EXPECT_EQ(observe(11, MOTIONS[3]), "-!-");
  EXPECT_EQ(tactical.playerType[11], 1);
}

TEST_F(Tactics, OnlyUninterruptedPlayRefinesAndTheSnapshotIsAlwaysOfTheCycleBefore) {
  move(9, 0);
  EXPECT_EQ(move(9, 40, 2), "...") << "a cycle was skipped";
  EXPECT_EQ(move(9, 40, 0), "...") << "the same cycle again";
  world->playMode = PLAY_MODE_FREE_KICK_US;
  world->otherTeam[10].pos.x = 40;
  EXPECT_EQ(move(9, 40), "...") << "play was stopped";
  world->playMode = PLAY_MODE_PLAY_ON;
  tactical.cyclesSinceLastMessage = 3;
  EXPECT_EQ(move(9, 40), "---");
  EXPECT_EQ(tactical.cyclesSinceLastMessage, 4);
  EXPECT_EQ(beliefs(10), "...") << "not moved since the stopped cycle";
}

TEST_F(Tactics, ASubstitutionForgetsOneOpponentsType) {
  for (const int n : {7, 8}) EXPECT_EQ(observe(n, MOTIONS[8]), "--!");
  world->otherSubs = std::vector<Substitution>(14, {8, 0});  // none of 8's is new
  world->otherSubs[0] = {7, world->time};
  world->numOtherSubs = 15;  // round the ring, the last one at its begin
  tactical.oldNumSubs = 14;
  EXPECT_EQ(move(7, 40), "...") << "the new one is not examined in this cycle";
  EXPECT_EQ(beliefs(8), "--!");
  EXPECT_EQ(tactical.playerType[7], -1);
  EXPECT_EQ(move(7, 40), "---") << "but in the next one";
}

}  // namespace
}  // namespace vok::test
