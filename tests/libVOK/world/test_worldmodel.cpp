#include "worldmodel.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <sstream>
#include <tuple>
#include <vector>

#include "Comm.h"
#include "support/server.h"
#include "support/world.h"

namespace vok::test {
namespace {

/// A world of three player types and substitution rings of eleven.
class World : public testing::Test {
 protected:
  void take(const std::string& text, client_type client = CLIENT_ONLINECOACH) {
    world.adjust(parsed(text, client), state);
  }
  void view(long time, const std::string& objects = "((b) 0 0 0 0)") {
    take("(see_global " + std::to_string(time) + " " + objects + ")");
  }

  /// One cycle in which our number 7 sends a command.
  void act(CycleCommand command, double param1, double param2 = 0) {
    world.my.number = 7;
    world.action.store({0, command, param1, param2});
    world.simCycle();
  }

  Worldmodel world = newWorld(3);
  ServerState state;
};

TEST_F(World, ConfiguredTeamSizesAreCutToATeam) {
  EXPECT_EQ(newWorld(0, "15").maxPlayersOurTeam, 11);
  EXPECT_EQ(newWorld(0, "-3").maxPlayersOtherTeam, 0);
}

// The fuzzers' good cycle holds ball and players of a view.
TEST_F(World, ViewIsTurnedForATeamOnTheRight) {
  state.side = SIDE_RIGHT;
  view(3, "((p \"Alpha\" 4) 0 0 0 0 401 30) ((g l) 52 0)");
  EXPECT_NEAR(world.ourTeam[4].bodyDir, toRadians(41), 1e-9);  // directions stay as they were sent
  EXPECT_NEAR(world.ourTeam[4].faceDir, PI / 6, 1e-9);
  EXPECT_TRUE(near(world.ourGoal.pos, {-52, 0}));
  EXPECT_EQ(std::pair(world.ourGoal.age, world.otherGoal.age), std::pair(0, int{NEVER}));
}

TEST_F(World, ViewIsReachedByPredictionAndNeverGoesBack) {
  // The view's time, the world's, and the age of a player that the view does not hold.
  const std::tuple<long, long, int> cases[] = {
      {9, 10, 5}, {10, 10, 6}, {13, 13, 8}, {2000000000, 2000000000, NEVER}};
  for (const auto& [seen, time, age] : cases) {
    world.time = 10;
    world.ourTeam[2].age = 5;
    view(seen);
    EXPECT_EQ(world.time, time) << seen;
    EXPECT_EQ(world.ourTeam[2].age, age) << seen;
  }
}

TEST_F(World, FirstGoalieSetsTheTacticalNumbers) {
  long time = 0;
  for (const char* who : {"\"Alpha\" 5", "\"Alpha\" 1", "\"Beta\" 3", "\"Beta\" 4"})
    view(++time, "((p " + std::string(who) + " goalie) 0 0)");
  const int expected[] = {-1, 2, 3, 4, 5, 1, 6, 7, 8, 9, 10, 11};
  for (int n = 0; n <= 11; ++n) EXPECT_EQ(world.ourTeam[n].tacticalNo, expected[n]) << n;
  EXPECT_EQ(world.otherGoalieNo, 3);
  EXPECT_EQ(world.otherTeam[9].isGoalie, GOALIE_FALSE);
}

/// All that a type gives a player, in the order of `WPlayerType`'s printed form.
std::string abilities(const WPlayer& p) {
  std::ostringstream out;
  out << WPlayerType{p.type,          p.vmax,          p.decay,         p.size,
                     p.staminaIncMax, p.inertiaFactor, p.dashPowerRate, p.kickableMargin,
                     p.kickRand,      p.extraStamina,  p.effortMin,     p.effortMax};
  return out.str();
}

TEST_F(World, PlayersTakeTheTypesThatWereAnnounced) {
  SensorData data;
  data.type = SENSOR_TYPE_PLAYER_TYPE;
  for (const int id : {-1, 1, 3}) {
    data.playerType = {id, 1.1, 40, 0.4, 7, 0.006, 0.35, 0.8, 0.2, 50, 0.9, 0.6};
    world.adjust(data, state);
  }
  // 100 * 0.006 / (1 - 0.4) is the speed that a full dash can reach.
  const char* announced =
      "(PlayerType 1 ((speed_max 1) (player_decay 0.4) (inertia_moment 7) (dash_power_rate 0.006))"
      " (player_size 0.35) ((kickable_margin 0.8) (kick_rand 0.2)) ((stamina_inc_max 40)"
      " (extra_stamina 50) (effort_max 0.9) (effort_min 0.6)))";
  EXPECT_EQ(reachableSpeed(1.1, 0.006, 1.2), 1.1) << "of a player that never slows down";
  world.my.number = 8;
  take("(change_player_type 8, 1)");
  std::ostringstream stored;
  stored << world.playerType[1];
  EXPECT_EQ(stored.str(), announced);
  EXPECT_EQ(abilities(world.ourTeam[8]), announced);
  EXPECT_EQ(abilities(world.my), announced);
  EXPECT_EQ(abilities(world.ourTeam[7]), abilities(WPlayer()));
}

TEST_F(World, ChangesAreCountedAndOpponentsGoBackToTheDefaultType) {
  StderrCapture errors;
  world.my.number = 8;
  take("(change_player_type 4, 2)");
  EXPECT_EQ(errors.take(), "Nr. 4 : Player 4 was changed to type 2, but I don't know that type!\n");
  EXPECT_EQ(std::pair(world.ourTeam[4].type, world.numOurSubs), std::pair(-1, 0));

  world.time = 30;
  world.otherTeam[1].setType({});
  for (const char* odd : {"0)", "12)", "3, 3)"}) take("(change_player_type " + std::string(odd));
  for (int n = 0; n <= 11; ++n) take("(change_player_type " + std::to_string(n % 11 + 1) + ")");
  EXPECT_EQ(abilities(world.otherTeam[1]), abilities(WPlayer()));
  EXPECT_EQ(world.numOtherSubs, 12);  // so the ring of eleven came round
  EXPECT_EQ(std::pair(world.otherSubs[0].number, world.otherSubs[1].number), std::pair(1, 2));
  EXPECT_EQ(world.otherSubs[10].time, 30);
  EXPECT_EQ(errors.take(), "");
}

TEST_F(World, CommandsHaveTheirEffectInTheNextCycle) {
  using Given = void (*)(Worldmodel&);
  const Given none = [](Worldmodel&) {};
  const Given tired = [](Worldmodel& w) { w.my.stamina = 50; };
  const Given running = [](Worldmodel& w) { w.my.v = {0.4, 0}; };
  const Given nearBall = [](Worldmodel& w) { w.ball.pos = {0.5, 0}; };
  const Given lying = [](Worldmodel& w) { w.my.cyclesSinceTackle = TACKLE_CYCLES; };
  const Given risen = [](Worldmodel& w) { w.my.cyclesSinceTackle = TACKLE_CYCLES + 1; };
  const Given kickOff = [](Worldmodel& w) { w.playMode = PLAY_MODE_BEFORE_KICK_OFF; };
  const Given freeKick = [](Worldmodel& w) { w.playMode = PLAY_MODE_FREE_KICK_US; };
  const Given goalie = [](Worldmodel& w) { w.my.isGoalie = GOALIE_TRUE; };
  const Given inGoal = [](Worldmodel& w) {
    w.my.pos = {-45, 0};
    w.my.v = {0.1, 0};
    w.ball = WBall({-44, 0}, {0, 0.1});
  };
  const Given caught = [](Worldmodel& w) { w.cyclesSinceCatch = CATCH_BAN_CYCLES; };
  const struct {
    CycleCommand command;
    Vector2d parameters;
    std::vector<Given> given;
    Vector2d pos;
    double bodyDir;
    Vector2d ball;
  } rows[] = {
      {DASH_COMMAND, {100, 0}, {none}, {0.6, 0}, 0, {20, 0}},
      {DASH_COMMAND, {-100, 0}, {none}, {-0.6, 0}, 0, {20, 0}},
      {DASH_COMMAND, {-100, 0}, {tired}, {-0.15, 0}, 0, {20, 0}},
      {DASH_COMMAND, {50, 0}, {freeKick, goalie, nearBall}, {0.3, 0}, 0, {0.8, 0}},
      {TURN_COMMAND, {PI / 2, 0}, {none}, {0, 0}, PI / 2, {20, 0}},
      {TURN_COMMAND, {PI / 2, 0}, {running}, {0.4, 0}, PI / 6, {20, 0}},
      {TURN_COMMAND, {-7, 0}, {running}, {0.4, 0}, -PI / 3, {20, 0}},
      {TURN_COMMAND, {1, 0}, {lying}, {0, 0}, 0, {20, 0}},
      {TURN_COMMAND, {1, 0}, {risen}, {0, 0}, 1, {20, 0}},
      // 100 * 0.027 * (1 - 0.25 * 0.115 / 0.7)
      {KICK_COMMAND, {100, PI / 2}, {nearBall}, {0, 0}, 0, {0.5, 2.5891071}},
      {KICK_COMMAND, {100, 0}, {none}, {0, 0}, 0, {20, 0}},
      // The ball comes to touch the goalie's next place.
      {CATCH_COMMAND, {0, 0}, {inGoal, goalie}, {-44.9, 0}, 0, {-44.515, 0}},
      {CATCH_COMMAND, {0, 0}, {inGoal, goalie, caught}, {-44.9, 0}, 0, {-44, 0.1}},
      {CATCH_COMMAND, {0, 0}, {inGoal}, {-44.9, 0}, 0, {-44, 0.1}},
      {MOVE_COMMAND, {-10, 2}, {kickOff, running}, {-10, 2}, 0, {20, 0}},
      {MOVE_COMMAND, {-10, 2}, {running}, {0.4, 0}, 0, {20, 0}},
      {MOVE_COMMAND, {-10, 2}, {freeKick, goalie, nearBall}, {-10, 2}, 0, {-9.5, 2}},
      {MOVE_COMMAND, {-10, 2}, {freeKick, goalie}, {-10, 2}, 0, {20, 0}},
      {MOVE_COMMAND, {-10, 2}, {freeKick, nearBall}, {0, 0}, 0, {0.5, 0}},
  };
  for (const auto& row : rows) {
    world = newWorld(3);
    world.ball.pos = {20, 0};
    for (const Given prepare : row.given) prepare(world);
    act(row.command, row.parameters.x, row.parameters.y);
    const auto number = &row - rows;
    EXPECT_TRUE(near(world.my.pos, row.pos)) << number << " " << world.my.pos.x;
    EXPECT_NEAR(world.my.bodyDir, row.bodyDir, 1e-9) << number;
    EXPECT_TRUE(near(world.ball.pos, row.ball)) << number << " " << world.ball.pos.x;
    EXPECT_TRUE(near(world.ourTeam[7].pos, world.my.pos)) << number;
  }
  act(TACKLE_COMMAND, 50);
  EXPECT_EQ(world.my.cyclesSinceTackle, 1);
  world.my.isGoalie = GOALIE_TRUE;
  world.my.cyclesSinceTackle = NEVER;
  act(CATCH_COMMAND, 0);
  EXPECT_EQ(world.cyclesSinceCatch, 1) << "a catch that misses counts";
}

TEST_F(World, StaminaEffortAndRecoveryFollowTheServersThresholds) {
  const struct {
    double power, stamina, effort, recovery;
    double staminaAfter, effortAfter, recoveryAfter;
  } rows[] = {
      {100, 4000, 1, 1, 3945, 1, 1},
      {-100, 4000, 1, 1, 3845, 1, 1},
      {-100, 50, 1, 1, 0.998 * 45, 0.995, 0.998},
      {0, 1000, EFFORT_MIN + 0.001, RECOVER_MIN + 0.001, 1000 + RECOVER_MIN * 45, EFFORT_MIN,
       RECOVER_MIN},
      {0, 3000, 0.995, 1, 3045, 1, 1},
      {0, 2000, 0.9, 0.9, 2000 + 0.9 * 45, 0.9, 0.9},
  };
  for (const auto& row : rows) {
    WPlayer& my = world.my;
    std::tie(my.stamina, my.effort, my.recovery) = std::tie(row.stamina, row.effort, row.recovery);
    act(DASH_COMMAND, row.power);
    EXPECT_NEAR(my.stamina, row.staminaAfter, 1e-9) << row.stamina;
    EXPECT_NEAR(my.effort, row.effortAfter, 1e-9) << row.stamina;
    EXPECT_NEAR(my.recovery, row.recoveryAfter, 1e-9) << row.stamina;
  }
}

TEST_F(World, OurPlayersTireAndTheOthersRest) {
  world.ourTeam[3].stamina = 1210;
  world.otherTeam[3].stamina = 1000;
  world.simCycle();
  EXPECT_EQ(world.ourTeam[1].stamina, 3945);
  EXPECT_EQ(world.ourTeam[3].stamina, 1200);
  EXPECT_EQ(world.otherTeam[1].stamina, 4000);
  EXPECT_EQ(world.otherTeam[3].stamina, 1045);
}

TEST_F(World, EveryCounterGrowsByACycleUpToNever) {
  world.my.number = 0;
  const std::vector<long*> longs = {&world.cyclesSinceCatch, &world.cyclesSincePointTo,
                                    &world.visualAge,        &world.vAge[9],
                                    &world.aOppAge[0],       &world.aOurAge[9]};
  const std::vector<int*> ages = {&world.my.age,
                                  &world.my.cyclesSinceTackle,
                                  &world.ball.age,
                                  &world.ourGoal.age,
                                  &world.otherGoal.age,
                                  &world.ourTeam[1].age,
                                  &world.ourTeam[11].bodyAge,
                                  &world.otherTeam[11].cyclesSinceTackle};
  for (const int before : {NEVER - 1, int{NEVER}}) {
    for (long* age : longs) *age = before;
    for (int* age : ages) *age = before;
    world.simCycle();
    for (const long* age : longs) EXPECT_EQ(*age, NEVER);
    for (const int* age : ages) EXPECT_EQ(*age, NEVER);
  }
}

TEST_F(World, BallBouncesOffAPlayerButNotOffTheCoach) {
  for (const int number : {0, 7}) {
    world.my.number = number;
    world.my.pos = {-0.1, 0};
    world.my.v = {0.1, 0};
    world.ball = WBall({1.2, 0}, {-1, 0});
    world.simCycle();
    // At a distance of 0.2 pushed apart to 1.0001 * 0.385 around their middle.
    EXPECT_TRUE(near(world.my.pos, {number == 7 ? 0.1 - 0.19251925 : 0, 0})) << world.my.pos.x;
    EXPECT_TRUE(near(world.my.v, {number == 7 ? -0.004 : 0.04, 0})) << world.my.v.x;
    EXPECT_TRUE(near(world.ball.pos, {number == 7 ? 0.1 + 0.19251925 : 0.2, 0}));
    EXPECT_TRUE(near(world.ball.v, {number == 7 ? 0.094 : -0.94, 0})) << world.ball.v.x;
  }
}

TEST_F(World, VoicesGoRoundTheirRingsAndThePenaltySideIsHeardOnce) {
  world.my.faceDir = 1;
  for (int i = 0; i < 11; ++i) take("(hear 1 " + std::to_string(6 * i) + " opp \"a\")");
  for (const char* voice : {"opp)", "-90 our 3 \"a\")", "referee play_on)"})
    take("(hear 1 " + std::string(voice));
  EXPECT_EQ(world.aOppCounter, 1);
  EXPECT_NEAR(world.aOppDir[0], 1 + PI / 3, 1e-9);
  EXPECT_EQ(world.aOppAge[1], 0);
  EXPECT_EQ(std::pair(world.aOurCounter, world.aOurAge[0]), std::pair(1L, 0L));
  EXPECT_EQ(world.penaltySide, SIDE_UNKNOWN);
  take("(hear 1 referee penalty_onfield_r)");
  take("(hear 1 referee penalty_onfield_l)");
  EXPECT_EQ(world.penaltySide, SIDE_RIGHT);
}

TEST_F(World, TheQueueIsTakenBehindTheTypesThatItHadToDrop) {
  setEntry("async_waitForSeeTime", "40");
  Comm comm("Alpha", CLIENT_ONLINECOACH, "127.0.0.1", 1, 0, false, 7, 8, SIDE_RIGHT);
  comm.serverOK = false;  // nobody to say "(bye)" to
  comm.async->setStates(0, 0, PLAY_MODE_KICK_OFF_THEM, SIDE_RIGHT, false);
  comm.async->ourScore = 1;
  comm.async->otherScore = 2;
  const StderrCapture errors;
  for (int i = 1; i < SensorDataStore::SIZE; ++i) {
    SensorData type;
    type.type = SENSOR_TYPE_PLAYER_TYPE;
    type.playerType.player_type = std::min(i, 2);
    comm.store->put(type);
  }
  comm.store->put(parsed("(see_global 5 ((b) 0 0))"));  // drops the first
  Worldmodel told = newWorld(3, "11", &comm);
  told.adjust();
  EXPECT_EQ(std::pair(told.playerType[1].state, told.playerType[2].state), std::pair(1, 2));
  EXPECT_EQ(std::tuple(told.time, told.playMode, told.ourSide, told.ourScore, told.otherScore),
            std::tuple(5, PLAY_MODE_KICK_OFF_THEM, SIDE_RIGHT, 1, 2));
}

// The signature of a recorded player holds what a body sense tells of the body.
TEST_F(World, ACommandTakesEffectWithTheBodySenseUnlessItIsOldOrLost) {
  const auto sense = [&](int time) {
    take("(sense_body " + std::to_string(time) + ")", CLIENT_FIELDPLAYER);
    return double(world.my.bodyDir);
  };
  world.time = 7;
  world.ball.age = 0;
  state.lastAction = {7, TURN_COMMAND, 1, 0};
  EXPECT_NEAR(sense(8), 1, 1e-9);
  EXPECT_NEAR(sense(9), 1, 1e-9) << "the same turn does not count again";
  sense(9);
  EXPECT_EQ(world.ball.age, 2) << "a second body sense of a cycle predicts nothing";
  state.lastAction.time = 9;
  state.actionLost = true;
  EXPECT_NEAR(sense(10), 1, 1e-9) << "a lost turn has no effect";
  sense(3);
  EXPECT_EQ(world.time, 10) << "too old";
}

}  // namespace
}  // namespace vok::test
