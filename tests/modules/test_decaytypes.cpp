// The opponents' types from the decay of their speed, step by step.
#include "tacticalmodule/decaytypes.h"

#include <gtest/gtest.h>

#include <cmath>
#include <memory>

#include "Config.h"
#include "Parser.h"
#include "constants.h"
#include "support/server.h"
#include "tacticalmodule/tacticalmodule.h"

namespace vok::test {
namespace {

constexpr std::size_t OPPONENT = 7;

class TypesFromDecay : public testing::Test {
 protected:
  TypesFromDecay() {
    Config::readFile(shippedConfig);
    setEntry("tac_typesFromDecay", "1");
    playerParams.player_types = 6;
    playerParams.subs_max = 3;
    playerParams.pt_max = 1;
    world = std::make_unique<Worldmodel>(nullptr);
    world->my.number = 0;
    world->playMode = PLAY_MODE_PLAY_ON;
    world->ball.pos = {0, 30};
    // Types 3 and 4 differ by less than a step shows, 2 and 5 in nothing but their power.
    constexpr double decays[] = {0.4, 0.35, 0.45, 0.38, 0.38004, 0.45};
    for (std::size_t id = 0; id < 6; ++id) {
      WPlayerType& type = world->playerType.at(id);
      type.state = static_cast<int>(id);
      type.playerDecay = decays[id];
      type.playerSpeedMax = 1.05;
      type.dashPowerRate = id == 5 ? 0.004 : 0.006;
      type.effortMax = 1;
    }
    tactical = std::make_unique<TacticalModule>(world.get(), nullptr);
    player().pos = {15, 3};
    player().age = 0;
    look();
  }
  ~TypesFromDecay() override {
    playerParams = before;
    setEntry("tac_typesFromDecay", "0");
  }

  WPlayer& player() { return world->otherTeam[OPPONENT]; }
  int verdict() const { return tactical->otherPlayerType(OPPONENT); }

  void look() {
    ++world->time;
    tactical->feedbackWorld();
  }

  // Six significant digits.
  static double printed(double x) {
    const double unit = std::pow(10, std::floor(std::log10(std::abs(x))) - 5);
    return std::round(x / unit) * unit;
  }

  // Some steps of a player of that decay to and fro, as the server prints them.
  void run(int steps, double decay, double length = 0.5) {
    for (; steps > 0; --steps) {
      const double way = (exact > 15 ? -length : length) * 1.00003;
      exact += way;
      player().pos.x = printed(exact);
      player().v = {printed(way * decay), 0};
      look();
    }
  }

  void hear(const char* text) {
    SensorData data;
    ASSERT_TRUE(Parser("Alpha", CLIENT_ONLINECOACH, 7, 7).parseServerString(text, data));
    world->adjust(data);
  }

  PlayerParams before = playerParams;
  double exact = 15;  ///< of the player, along x
  std::unique_ptr<Worldmodel> world;
  std::unique_ptr<TacticalModule> tactical;
};

TEST_F(TypesFromDecay, ThreeCleanStepsDecide) {
  run(2, 0.35);
  EXPECT_EQ(verdict(), -1);
  run(1, 0.35);
  EXPECT_EQ(verdict(), 1);
  EXPECT_EQ(tactical->playerTypeData[OPPONENT][1].state, PTS_SURE);
  EXPECT_EQ(tactical->playerTypeData[OPPONENT][1].score, 3);
  EXPECT_EQ(tactical->playerTypeData[OPPONENT][0].state, PTS_IMPOSSIBLE);
  EXPECT_EQ(tactical->otherPlayerType(8), -1);
}

TEST_F(TypesFromDecay, StepsThatTellNothingDoNotCount) {
  const struct {
    const char* name;
    void (*disturb)(Worldmodel&);
  } rows[] = {
      {"a type is not announced", [](Worldmodel& w) { w.playerType[2].state = -1; }},
      {"the ball is at its feet",
       [](Worldmodel& w) {
         w.ball.pos = {15.2, 3};
         w.ball.age = 0;
       }},
      {"a player of ours is near",
       [](Worldmodel& w) {
         w.ourTeam[4].pos = {15.2, 3};
         w.ourTeam[4].age = 0;
       }},
      {"a team-mate is near",
       [](Worldmodel& w) {
         w.otherTeam[4].pos = {15.2, 3};
         w.otherTeam[4].age = 0;
       }},
      {"play is stopped", [](Worldmodel& w) { w.playMode = PLAY_MODE_FREE_KICK_US; }},
      {"it is predicted", [](Worldmodel& w) { w.otherTeam[OPPONENT].age = 1; }},
  };
  for (const auto& row : rows) {
    const Worldmodel undisturbed = *world;
    tactical = std::make_unique<TacticalModule>(world.get(), nullptr);
    row.disturb(*world);
    run(9, 0.35, 0.3);
    EXPECT_EQ(verdict(), -1) << row.name;
    *world = undisturbed;
  }
  run(9, 0.35, 1.3);
  EXPECT_EQ(verdict(), -1) << "farther than a player runs";
  run(9, -0.035);
  EXPECT_EQ(verdict(), -1) << "bounced";
  for (int i = 0; i < 9; ++i) look();
  EXPECT_EQ(verdict(), -1) << "stands";
  run(4, 0.35);
  EXPECT_EQ(verdict(), 1);
}

TEST_F(TypesFromDecay, AnAnnouncedChangeOfThatOpponentResetsItInAnyMode) {
  for (const play_mode mode : {PLAY_MODE_PLAY_ON, PLAY_MODE_FREE_KICK_US, PLAY_MODE_GOAL_US}) {
    world->playMode = PLAY_MODE_PLAY_ON;
    run(4, 0.35);
    ASSERT_EQ(verdict(), 1);
    world->playMode = mode;
    hear("(change_player_type 8)");
    hear("(change_player_type 7 3)");  // our own number 7
    look();
    EXPECT_EQ(verdict(), 1) << mode;
    hear("(change_player_type 7)");
    look();
    EXPECT_EQ(verdict(), -1) << mode;
    EXPECT_EQ(tactical->playerTypeData[OPPONENT][1].score, 0);
  }
}

TEST_F(TypesFromDecay, AVerdictIsGivenUpWhenTheEvidenceTurns) {
  run(5, 0.35);
  run(2, 0.4);
  EXPECT_EQ(verdict(), 1);
  run(1, 0.4);
  EXPECT_EQ(verdict(), -1);
  run(3, 0.4);
  EXPECT_EQ(verdict(), 0);
}

TEST_F(TypesFromDecay, NearTwinsWaitForAStepThatTellsThemApart) {
  for (int i = 0; i < 20; ++i) {  // far from the centre, slow: 0.38002 is both
    player().pos.x = i % 2 == 0 ? 15.2 : 15;
    player().v = {i % 2 == 0 ? 0.076004 : -0.076004, 0};
    look();
  }
  EXPECT_EQ(verdict(), -1);
  player().pos.x = 2;
  look();
  player().pos.x = 2.5;
  player().v = {0.19002, 0};
  look();
  EXPECT_EQ(verdict(), 4);
}

TEST_F(TypesFromDecay, TwinsAreToldApartByAFullDashOrByTheNumberOfTheType) {
  run(150, 0.45, 0.1);
  EXPECT_EQ(verdict(), -1) << "2 and 5 are both possible";
  TacticalModule fresh(world.get(), nullptr);
  fresh.playerType[3] = 5;
  std::swap(*tactical, fresh);
  run(150, 0.45, 0.1);
  EXPECT_EQ(verdict(), 2) << "number 3 has type 5, and no second may";
  hear("(change_player_type 7)");
  tactical->playerType[3] = -1;
  run(150, 0.45, 0.4);
  EXPECT_EQ(verdict(), 2) << "turns about, from 0.18 to -0.4 m: 0.58 less noise, 5 has 0.4";
}

}  // namespace
}  // namespace vok::test
