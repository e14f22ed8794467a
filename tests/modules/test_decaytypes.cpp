// The opponents' types from the decay of their speed, step by step.
#include "tacticalmodule.h"

#include <gtest/gtest.h>

#include <cmath>
#include <tuple>

#include "support/world.h"

namespace vok::test {
namespace {

constexpr int OPPONENT = 7;

class TypesFromDecay : public testing::Test {
 protected:
  TypesFromDecay() {
    setEntry("tac_typesFromDecay", "1");
    forgetAll();
    playerParams.pt_max = 1;
    // Types 3 and 4 differ by less than a step shows, 0 and 5 in nothing but their power.
    constexpr double DECAYS[] = {0.4, 0.35, 0.45, 0.38, 0.38004, 0.4};
    for (int id = 0; id < 6; ++id) {
      WPlayerType& type = world->playerType.at(static_cast<std::size_t>(id));
      type.state = id;
      type.playerDecay = DECAYS[id];
      type.dashPowerRate = id == 5 ? 0.0052 : 0.01;
      type.effortMax = 1;
    }
    player().pos = {15, 3};
    player().age = 0;
    look();
  }

  void forgetAll() { tactical = {world.get(), nullptr}; }
  WPlayer& player() { return world->otherTeam[OPPONENT]; }
  int verdict() const { return tactical.otherPlayerType(OPPONENT); }

  void look() {
    ++world->time;
    tactical.feedbackWorld();
  }

  // The verdict after steps to and fro, or in a row.
  int after(int steps, double decay, double length = 0.5, bool inRow = false) {
    for (; steps > 0; --steps) {
      player().pos.x += forth * length;
      player().v = {forth * length * decay, 0};
      look();
      if (!inRow) forth = -forth;
    }
    return verdict();
  }

  double forth = 1;
  const std::unique_ptr<Worldmodel> world = coachsWorld(6);
  TacticalModule tactical{world.get(), nullptr};
};

TEST_F(TypesFromDecay, ThreeCleanStepsDecideAndThreeOthersUndo) {
  EXPECT_EQ(after(2, 0.35), -1);
  EXPECT_EQ(after(1, 0.35), 1);
  after(9, -0.035);  // bounces, which fit no type
  EXPECT_EQ(after(2, 0.45), 1);
  EXPECT_EQ(after(1 + 1, 0.45), -1);
  EXPECT_EQ(after(6, 0.35), -1) << "more than an eighth speaks against it";
}

TEST_F(TypesFromDecay, StepsThatTellNothingDoNotCount) {
  const std::pair<double, void (*)(Worldmodel&)> rows[] = {
      {0.3, [](Worldmodel& w) { w.playerType[2].state = -1; }},
      {0.3, [](Worldmodel& w) { w.playMode = w.time % 2 ? PLAY_MODE_PLAY_ON : PLAY_MODE_GOAL_US; }},
      {0.3, [](Worldmodel& w) { ++w.time; }},  // every second view is missing
      {0.3, [](Worldmodel& w) { w.otherTeam[OPPONENT].age = static_cast<int>(w.time % 2); }},
      {1.3, [](Worldmodel&) {}},  // farther than a player runs
  };
  const Worldmodel undisturbed = *world;
  for (const auto& row : rows) {
    forgetAll();
    for (int i = 0; i < 20; ++i) {
      row.second(*world);
      after(1, 0.35, row.first);
    }
    EXPECT_EQ(verdict(), -1) << "row " << &row - rows;
    *world = undisturbed;
  }
}

// Two players have radii of 0.3 m, the ball one of 0.085 m, and 0.1 m of room counts as contact.
TEST_F(TypesFromDecay, AStepThatMayHaveEndedInAContactDoesNotCount) {
  const std::pair<WObject*, double> rows[] = {
      {&world->ball, 0.485}, {&world->ourTeam[4], 0.7}, {&world->otherTeam[4], 0.7}};
  for (const auto& [other, reach] : rows) {
    other->age = 0;
    for (const double distance : {reach - 0.001, reach + 0.001}) {
      forgetAll();
      other->pos = {15.15, 3 + std::sqrt(distance * distance - 0.15 * 0.15)};  // beside the way
      EXPECT_EQ(after(20, 0.35, 0.3), distance < reach ? -1 : 1) << distance;
    }
  }
}

TEST_F(TypesFromDecay, AnAnnouncedChangeResetsItInAnyMode) {
  for (const play_mode mode : {PLAY_MODE_PLAY_ON, PLAY_MODE_FREE_KICK_US}) {
    EXPECT_EQ(after(4, 0.35), 1);
    world->playMode = mode;
    ++world->otherTypeChanges[OPPONENT];
    EXPECT_EQ(after(2, 0.35), -1) << mode;
  }
}

// A step of half a metre leaves 0.00008 open in the decay, two in a row half of that.
TEST_F(TypesFromDecay, NearTwinsAreToldApartByStepsInARow) {
  EXPECT_EQ(after(40, 0.38), -1) << "to and fro shows no more than each step";
  for (int i = 0; i < 40; ++i, ++world->time, look()) after(1, 0.38, 0.5, true);
  EXPECT_EQ(verdict(), -1) << "a view is missing between any two";
  EXPECT_EQ(after(2, 0.38, 0.5, true), 3);
  EXPECT_EQ(after(6, 0.38004, -0.5, true), -1) << "three times two steps in a row";
  after(1, 0.45);
  after(20, 0.38);
  EXPECT_EQ(after(2, 0.38, 0.5, true), -1) << "one step spoke against it";
}

TEST_F(TypesFromDecay, TwinsAreToldApartByAFullDashOrByTheNumberOfTheType) {
  tactical.playerType[3] = 5;
  EXPECT_EQ(after(30, 0.4, 0.4), -1) << "too few steps";
  tactical.playerType[3] = -1;
  // Turning about from 0.16 to -0.4 m is 0.56, less noise 0.49; type 5 has 0.52.
  EXPECT_EQ(after(120, 0.4, 0.4), -1);
  EXPECT_EQ(after(1, 0.4), -1) << "0.61, but once is an accident";
  // The type of number 3, players allowed of a type. Many may have the default type.
  constexpr std::tuple<int, double, int> ROWS[] = {{0, 1, -1}, {5, 0, -1}, {5, 1, 0}};
  for (const auto& [type, allowed, decided] : ROWS) {
    tactical.playerType[3] = type;
    playerParams.pt_max = allowed;
    EXPECT_EQ(after(1, 0.4, 0.1), decided) << type << " for " << allowed;
  }
}

// Turning about gains the whole way and what was left of the way before: 1.4 times the way. At x =
// 15 that is known to 0.0001 m, at the centre spot to 0.0000015 m, and the 0.52 m of type 5 to
// 0.000005 m.
TEST_F(TypesFromDecay, TwinsAreNotToldApartByWhatTheViewRoundsOff) {
  PLAYER_RAND = 0;
  constexpr std::tuple<double, double, int> ROWS[] = {
      {15, 0.5201, -1}, {15, 0.52012, 0}, {0.01, 0.520006, -1}, {0.01, 0.520008, 0}};
  for (const auto& [x, gained, type] : ROWS) {
    forgetAll();
    player().pos = {x, 0.01};
    EXPECT_EQ(after(120, 0.4, gained / 1.4), type) << gained << " at " << x;
  }
}

}  // namespace
}  // namespace vok::test
