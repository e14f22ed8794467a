// Roles, and what the opponents' motion tells about their types.
#include "tacticalmodule/tacticalmodule.h"

#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "Config.h"
#include "constants.h"
#include "support/server.h"

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
    Config::readFile(shippedConfig);
    playerParams.player_types = 3;
    world = std::make_unique<Worldmodel>(nullptr);
    world->my.number = 0;
    world->playMode = PLAY_MODE_PLAY_ON;
    constexpr double types[3][4] = {
        {1.0, 5, 0.006, 0.3}, {1.25, 179, 0.0075, 0.4}, {1.5, 200, 0.009, 0.5}};
    for (std::size_t id = 0; id < 3; ++id) {
      WPlayerType& type = world->playerType.at(id);
      type.playerSpeedMax = types[id][0];
      type.inertiaFactor = types[id][1];
      type.dashPowerRate = types[id][2];
      type.playerDecay = types[id][3];
    }
    tactical = std::make_unique<TacticalModule>(world.get(), nullptr);
  }
  ~Tactics() override { playerParams = before; }

  void observe(std::size_t opponent, const Motion& motion) {
    WPlayer& player = world->otherTeam.at(opponent);
    player.v = {motion.oldSpeed, 0};
    player.bodyDir = motion.turnFrom;
    tactical->feedbackWorld();
    player.pos.x += motion.way;
    player.v = {motion.newSpeed, 0};
    player.bodyDir = motion.turnTo;
    ++world->time;
    tactical->feedbackWorld();
  }

  std::string beliefs(std::size_t opponent) const {
    std::string text;
    for (const PlayerTypeData& belief : tactical->playerTypeData.at(opponent)) {
      text += "-!."[belief.state];
    }
    return text;
  }

  PlayerParams before = playerParams;
  std::unique_ptr<Worldmodel> world;
  std::unique_ptr<TacticalModule> tactical;
};

TEST_F(Tactics, RolesFollowFromTheTacticalNumber) {
  world->adjustTacticalNumbers(3);           // of shirts 3, 1, 2, 4, 5, ...
  const std::string roles = ".DD.DDddooFF";  // by shirts, from 0
  for (int n = 1; n <= 11; ++n) {
    const char role = roles.at(static_cast<std::size_t>(n));
    EXPECT_EQ(tactical->ourTeamDefender(n), role == 'D') << n;
    EXPECT_EQ(tactical->ourTeamDefMidfield(n), role == 'd') << n;
    EXPECT_EQ(tactical->ourTeamOffMidfield(n), role == 'o') << n;
    EXPECT_EQ(tactical->ourTeamMidfield(n), role == 'd' || role == 'o') << n;
    EXPECT_EQ(tactical->ourTeamOffender(n), role == 'F') << n;
  }
}

TEST_F(Tactics, OddHeadCountsAreBorne) {
  setEntry("ourDefenders", "-9");
  setEntry("ourDefMidfield", "2147483647");
  setEntry("ourOffMidfield", "2147483647");
  const TacticalModule odd(world.get(), nullptr);
  EXPECT_FALSE(odd.ourTeamMidfield(2)) << "without a tactical number";
  world->ourTeam[2].tacticalNo = 11;
  EXPECT_TRUE(odd.ourTeamMidfield(2));
}

// Type by type: top speed 1, 1.25, 1.5; inertia 5, 179, 200; dash rate 0.006, 0.0075, 0.009;
// decay 0.3, 0.4, 0.5. The rows that bar a single type meet type 1's bound exactly.
const Motion motions[] = {
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

TEST_F(Tactics, MotionExcludesTheTypesThatItContradicts) {
  for (const Motion& motion : motions) {
    tactical = std::make_unique<TacticalModule>(world.get(), nullptr);
    observe(5, motion);
    EXPECT_EQ(beliefs(5), motion.beliefs) << motion.name;
    EXPECT_EQ(beliefs(6), "...") << motion.name;
  }
}

TEST_F(Tactics, ImpossibilityAddsUpUntilTheTypeIsDecided) {
  for (const int i : {2, 3, 8}) observe(11, motions[i]);
  EXPECT_EQ(beliefs(11), "-!-");
  EXPECT_EQ(tactical->playerType[11], 1);
}

TEST_F(Tactics, OnlyUninterruptedPlayRefinesAndTheSnapshotIsAlwaysOfTheCycleBefore) {
  WPlayer& player = world->otherTeam[9];
  const auto observed = [&](long cycles, double way, play_mode mode) {
    world->time += cycles;
    world->playMode = mode;
    player.pos.x += way;
    tactical->feedbackWorld();
    return beliefs(9);
  };
  observed(1, 0, PLAY_MODE_PLAY_ON);
  EXPECT_EQ(observed(2, 40, PLAY_MODE_PLAY_ON), "...") << "a cycle was skipped";
  EXPECT_EQ(observed(0, 40, PLAY_MODE_PLAY_ON), "...") << "the same cycle again";
  EXPECT_EQ(observed(1, 40, PLAY_MODE_FREE_KICK_US), "...") << "play was stopped";
  EXPECT_EQ(observed(1, 0, PLAY_MODE_PLAY_ON), "...") << "not moved since the stopped cycle";
  EXPECT_EQ(observed(1, 40, PLAY_MODE_PLAY_ON), "---");
}

TEST_F(Tactics, ASubstitutionForgetsOneOpponentsType) {
  for (const std::size_t n : {7U, 8U}) observe(n, motions[8]);
  EXPECT_EQ(beliefs(7) + beliefs(8), "--!--!");
  world->otherSubs = std::vector<Substitution>(14, {8, 0});  // none of 8's is new
  world->otherSubs[0] = {7, world->time};
  world->numOtherSubs = 15;  // round the ring, the last one at its begin
  tactical->oldNumSubs = 14;
  world->otherTeam[7].pos.x += 40;  // the new one is not examined in this cycle
  ++world->time;
  tactical->feedbackWorld();
  EXPECT_EQ(beliefs(7) + beliefs(8), "...--!");
  EXPECT_EQ(tactical->playerType[7], -1);
}

}  // namespace
}  // namespace vok::test
