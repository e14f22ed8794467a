// Roles, and what the opponents' motion tells about their types.
#include <gtest/gtest.h>

#include <memory>
#include <string>

#include "Config.h"
#include "constants.h"
#include "support/server.h"
#include "tacticalmodule/tacticalmodule.h"

namespace vok::test {
namespace {

constexpr const char* rangeWarning =
    "Warning: ensure n >= 1 && n <= 11 not valid in tacticalmodule:";

// One cycle of an opponent along x: way in metres, speeds at both views, turn in radians.
struct Motion {
  const char* name;
  double way;
  double oldSpeed;
  double newSpeed;
  double turnFrom;
  double turnTo;
  const char* beliefs;
};

class Tactics : public testing::Test {
 protected:
  Tactics() {
    Config::readFile(shippedConfig);
    playerParams.player_types = 3;
    playerParams.subs_max = 3;
    world = std::make_unique<Worldmodel>(nullptr);
    world->my.number = 0;
    world->playMode = PLAY_MODE_PLAY_ON;
    world->time = 10;
    setType(0, 1.0, 5, 0.006, 0.3);
    setType(1, 1.25, 179, 0.0075, 0.4);
    setType(2, 1.5, 200, 0.009, 0.5);
    tactical = std::make_unique<TacticalModule>(world.get(), nullptr);
  }
  ~Tactics() override { playerParams = before; }

  void setType(std::size_t id, double speedMax, double inertia, double dashRate, double decay) {
    WPlayerType& type = world->playerType.at(id);
    type.playerSpeedMax = speedMax;
    type.inertiaFactor = inertia;
    type.dashPowerRate = dashRate;
    type.playerDecay = decay;
  }

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

  // Whether each type is impossible ('-'), sure ('!') or open ('.').
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
  // Of tactical numbers 1..11: defender, defensive and offensive midfield, offender.
  const std::string roles = ".DDDDddooFF";
  world->adjustTacticalNumbers(3);  // shirts 3, 1, 2, 4, 5, ... are 1, 2, 3, 4, 5, ...
  for (int n = 1; n <= 11; ++n) {
    const int place = n == 3 ? 1 : n < 3 ? n + 1 : n;
    const char role = roles.at(static_cast<std::size_t>(place - 1));
    EXPECT_EQ(tactical->ourTeamDefender(n), role == 'D') << n;
    EXPECT_EQ(tactical->ourTeamDefMidfield(n), role == 'd') << n;
    EXPECT_EQ(tactical->ourTeamOffMidfield(n), role == 'o') << n;
    EXPECT_EQ(tactical->ourTeamMidfield(n), role == 'd' || role == 'o') << n;
    EXPECT_EQ(tactical->ourTeamOffender(n), role == 'F') << n;
  }
  world->ourTeam[7].tacticalNo = -1;
  tactical->ourSystem.numDefenders = -9;  // -1 is no place even where a role would reach there
  EXPECT_FALSE(tactical->ourTeamMidfield(7));
  EXPECT_FALSE(tactical->ourTeamOffender(7));
}

TEST_F(Tactics, NumbersOfNoPlayerAreReportedAndHaveNoRole) {
  StderrCapture errors;
  for (const int n : {0, 12, -1}) {
    EXPECT_FALSE(tactical->ourTeamOffender(n));
    EXPECT_TRUE(errors.take().starts_with(rangeWarning)) << n;
  }
  EXPECT_EQ(tactical->otherPlayerType(12), -1);
}

TEST_F(Tactics, HeadCountsOfTheConfigurationMayBeAnything) {
  StderrCapture errors;
  setEntry("ourDefMidfield", "2147483647");
  setEntry("ourOffMidfield", "2147483647");
  const TacticalModule odd(world.get(), nullptr);
  world->ourTeam[2].tacticalNo = 11;
  EXPECT_TRUE(odd.ourTeamMidfield(2));
  EXPECT_EQ(errors.take(), "");

  const TacticalSystem eleven(4, 2, 2, 3);
  EXPECT_EQ(eleven.numMidfield, 4);
  EXPECT_TRUE(errors.take().starts_with(
      "Warning: ensure _numDef + _numDefMid + _numOffMid + _numOff == 10 not valid in "
      "tacticalmodule:"));
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
    {"too fast for every type", 2, 2, 100, 0, 0, "---"},
};
const Motion& runs = motions[2];
const Motion& turns = motions[3];
const Motion& sprints = motions[8];

TEST_F(Tactics, MotionExcludesTheTypesThatItContradicts) {
  for (const Motion& motion : motions) {
    tactical = std::make_unique<TacticalModule>(world.get(), nullptr);
    observe(5, motion);
    EXPECT_EQ(beliefs(5), motion.beliefs) << motion.name;
    EXPECT_EQ(tactical->otherPlayerType(5), &motion == &sprints ? 2 : -1) << motion.name;
    EXPECT_EQ(beliefs(6), "...") << motion.name;
  }
}

TEST_F(Tactics, ImpossibilityAddsUpOverTheCycles) {
  observe(11, runs);
  EXPECT_EQ(beliefs(11), "-..");
  observe(11, turns);
  EXPECT_EQ(beliefs(11), "-!-");
  EXPECT_EQ(tactical->playerType[11], 1);
  observe(11, sprints);
  EXPECT_EQ(beliefs(11), "-!-") << "a decided type is not examined again";
}

TEST_F(Tactics, OnlyUninterruptedPlayRefinesAndTheSnapshotIsAlwaysOfTheCycleBefore) {
  WPlayer& player = world->otherTeam[9];
  tactical->feedbackWorld();
  player.pos.x += 40;  // would contradict every type
  world->time += 2;
  tactical->feedbackWorld();
  EXPECT_EQ(beliefs(9), "...") << "a cycle was skipped";
  player.pos.x += 40;
  tactical->feedbackWorld();
  EXPECT_EQ(beliefs(9), "...") << "the same cycle again";
  player.pos.x += 40;
  ++world->time;
  world->playMode = PLAY_MODE_FREE_KICK_US;
  tactical->feedbackWorld();
  EXPECT_EQ(beliefs(9), "...") << "play was stopped";
  ++world->time;
  world->playMode = PLAY_MODE_PLAY_ON;
  tactical->feedbackWorld();
  EXPECT_EQ(beliefs(9), "...") << "it has not moved since the stopped cycle";
}

TEST_F(Tactics, ASubstitutionForgetsOneOpponentsType) {
  for (const std::size_t n : {7U, 8U}) observe(n, sprints);
  ASSERT_EQ(beliefs(7) + beliefs(8), "--!--!");

  const auto change = [&](int number) {
    world->otherSubs.at(static_cast<std::size_t>(world->numOtherSubs) % world->otherSubs.size()) = {
        number, world->time};
    ++world->numOtherSubs;
  };
  change(7);
  change(3);
  world->otherTeam[7].pos.x += 40;  // the new one is not examined in this cycle
  ++world->time;
  tactical->feedbackWorld();
  EXPECT_EQ(beliefs(7) + beliefs(8), "...--!");
  EXPECT_EQ(tactical->playerType[7], -1);
  EXPECT_EQ(tactical->playerType[8], 2);

  // Many changes at once: only the ring's 14 can be looked up.
  change(8);
  for (int i = 0; i < 14; ++i) change(2);
  ++world->time;
  tactical->feedbackWorld();
  EXPECT_EQ(beliefs(8), "--!");
}

TEST_F(Tactics, APlayerAgesItsPassesAndForgetsWhatWasReported) {
  world->my.number = 4;
  tactical->cyclesSinceLastMessage = NEVER - 1;
  tactical->communicateSimAction = true;
  tactical->playerPassInfo[4].age = 1;
  tactical->reportedTAction = {TA_PASS, TQ_REPORTED, 3, 4, 9};
  tactical->feedbackWorld();
  EXPECT_TRUE(tactical->feedbackWorld());
  EXPECT_EQ(tactical->cyclesSinceLastMessage, NEVER);
  EXPECT_FALSE(tactical->communicateSimAction);
  EXPECT_EQ(tactical->playerPassInfo[4].age, 3);
  EXPECT_EQ(tactical->playerPassInfo[11].age, NEVER);
  EXPECT_EQ(tactical->reportedTAction.state, TA_UNKNOWN);
  EXPECT_EQ(tactical->reportedTAction.receiver, -1);
  EXPECT_EQ(tactical->oldTime, -2) << "the opponents' types are the coach's business";
}

}  // namespace
}  // namespace vok::test
