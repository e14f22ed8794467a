#include "worldmodel.h"

#include <gtest/gtest.h>

#include <sstream>
#include <tuple>

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
  /// One cycle in which our number 7 sends a command.
  void act(CycleCommand command, double param1, double param2 = 0) {
    world.my.number = 7;
    world.action.store({0, command, param1, param2});
    world.simCycle();
  }

  /// What a command makes of our place, the ball's and our direction. Then the world is new.
  void expectAct(CycleCommand command, Vector2d parameters, Vector2d pos, Vector2d ball = FAR,
                 double bodyDir = 0) {
    act(command, parameters.x, parameters.y);
    EXPECT_TRUE(near(world.my.pos, pos)) << command << " " << world.my.pos.x;
    EXPECT_TRUE(near(world.ball.pos, ball)) << command << " " << world.ball.pos.x;
    EXPECT_NEAR(world.my.bodyDir, bodyDir, 1e-9) << command;
    world = newWorld(3);
    world.ball.pos = FAR;
  }

  inline static const Vector2d FAR{20, 0};
  Worldmodel world = newWorld(3);
  ServerState state;
};

TEST_F(World, ConfiguredTeamSizesAreCutToATeam) {
  EXPECT_EQ(newWorld(0, "15").maxPlayersOurTeam, 11);
  EXPECT_EQ(newWorld(0, "-3").maxPlayersOtherTeam, 0);
}

TEST_F(World, ViewIsReachedByPredictionAndNeverGoesBack) {
  world.time = 10;
  world.ourTeam[2].age = 5;
  take("(see_global 9 ((b) 0 0))");
  EXPECT_EQ(std::tuple(world.time, world.ourTeam[2].age), std::tuple(10, 5));
  take("(see_global 2000000000 ((b) 0 0))");
  EXPECT_EQ(std::tuple(world.time, world.ourTeam[2].age), std::tuple(2000000000, int{NEVER}));
}

TEST_F(World, FirstGoalieSetsTheTacticalNumbers) {
  for (const char* who : {"\"Alpha\" 3", "\"Alpha\" 1", "\"Beta\" 3", "\"Beta\" 4"})
    take("(see_global 1 ((p " + std::string(who) + " goalie) 0 0))");
  const int expected[] = {-1, 2, 3, 1, 4, 5, 6, 7, 8, 9, 10, 11};
  for (int n = 0; n <= 11; ++n) EXPECT_EQ(world.ourTeam[n].tacticalNo, expected[n]) << n;
  EXPECT_EQ(world.otherGoalieNo, 3);
}

/// All that a type gives a player, as the type is printed.
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
  world.my.number = 8;
  take("(change_player_type 8, 1)");
  // 100 * 0.006 / (1 - 0.4) is the speed that a full dash can reach.
  EXPECT_EQ(abilities(world.my),
            "(PlayerType 1 ((speed_max 1) (player_decay 0.4) (inertia_moment 7) (dash_power_rate "
            "0.006)) (player_size 0.35) ((kickable_margin 0.8) (kick_rand 0.2)) ((stamina_inc_max "
            "40) (extra_stamina 50) (effort_max 0.9) (effort_min 0.6)))");
  EXPECT_EQ(abilities(world.ourTeam[8]), abilities(world.my));
  EXPECT_EQ(reachableSpeed(1.1, 0.006, 1.2), 1.1) << "of a player that never slows down";
}

TEST_F(World, ChangesAreCountedAndOpponentsGoBackToTheDefaultType) {
  StderrCapture errors;
  take("(change_player_type 4, 2)");
  EXPECT_EQ(errors.take(), "Nr. 4 : Player 4 was changed to type 2, but I don't know that type!\n");
  EXPECT_EQ(std::pair(world.ourTeam[4].type, world.numOurSubs), std::pair(-1, 0));

  world.otherTeam[1].setType({});
  for (const char* odd : {"0)", "12)", "3, 3)"}) take("(change_player_type " + std::string(odd));
  for (int n = 0; n <= 11; ++n) take("(change_player_type " + std::to_string(n % 11 + 1) + ")");
  EXPECT_EQ(abilities(world.otherTeam[1]), abilities(WPlayer()));
  EXPECT_EQ(world.numOtherSubs, 12);  // so the ring of eleven came round
  EXPECT_EQ(std::pair(world.otherSubs[0].number, world.otherSubs[1].number), std::pair(1, 2));
}

TEST_F(World, CommandsHaveTheirEffectInTheNextCycle) {
  world.ball.pos = FAR;
  world.my.stamina = 50;
  expectAct(DASH_COMMAND, {-100, 0}, {-0.15, 0});
  world.my.v = {0.4, 0};
  world.my.cyclesSinceTackle = TACKLE_CYCLES + 1;
  expectAct(TURN_COMMAND, {-7, 0}, {0.4, 0}, FAR, -PI / 3);
  world.my.cyclesSinceTackle = TACKLE_CYCLES;
  expectAct(TURN_COMMAND, {1, 0}, {});
  expectAct(KICK_COMMAND, {100, 0}, {});
  world.ball.pos = {0, 0.5};  // 100 * 0.027 * (1 - 0.25 / 2 - 0.25 * 0.115 / 0.7)
  expectAct(KICK_COMMAND, {100, 0}, {}, {2.2516071, 0.5});
  expectAct(MOVE_COMMAND, {-9, 2}, {});
  world.playMode = PLAY_MODE_GOAL_US;
  expectAct(MOVE_COMMAND, {-9, 2}, {-9, 2});
  act(TACKLE_COMMAND, 50);
  EXPECT_EQ(world.my.cyclesSinceTackle, 1);
}

TEST_F(World, AGoalieCatchesTheBallAndCarriesItAtAFreeKick) {
  const auto freeKick = [&](goalie_player goalie) {
    world.playMode = PLAY_MODE_FREE_KICK_US;
    world.my.isGoalie = goalie;
    world.ball.pos = {0.5, 0};
  };
  freeKick(GOALIE_TRUE);
  expectAct(DASH_COMMAND, {50, 0}, {0.3, 0}, {0.8, 0});
  freeKick(GOALIE_TRUE);
  expectAct(MOVE_COMMAND, {-9, 2}, {-9, 2}, {-8.5, 2});
  freeKick(GOALIE_FALSE);
  expectAct(MOVE_COMMAND, {-9, 2}, {}, {0.5, 0});
  for (const long sinceCatch : {CATCH_BAN_CYCLES + 1, CATCH_BAN_CYCLES}) {
    world.cyclesSinceCatch = sinceCatch;
    world.my = WPlayer({-45, 0}, {0.1, 0});
    world.my.isGoalie = GOALIE_TRUE;
    world.ball = WBall({-44, 0}, {0, 0.1});
    // It comes to touch our next place.
    const bool caught = sinceCatch > CATCH_BAN_CYCLES;
    expectAct(CATCH_COMMAND, {}, {-44.9, 0}, caught ? Vector2d(-44.515, 0) : Vector2d(-44, 0.1));
  }
}

TEST_F(World, StaminaEffortAndRecoveryFollowTheServersThresholds) {
  // Power, and stamina, effort and recovery before and after.
  const std::array<double, 7> rows[] = {{-100, 50, 1, 1, 0.998 * 45, 0.995, 0.998},
                                        {0, 1000, 0.601, 0.501, 1000 + 0.5 * 45, 0.6, 0.5},
                                        {0, 3000, 0.995, 1, 3045, 1, 1}};
  for (const auto& row : rows) {
    WPlayer& my = world.my;
    std::tie(my.stamina, my.effort, my.recovery) = std::tie(row[1], row[2], row[3]);
    act(DASH_COMMAND, row[0]);
    EXPECT_NEAR(my.stamina, row[4], 1e-9) << row[1];
    EXPECT_NEAR(my.effort, row[5], 1e-9) << row[1];
    EXPECT_NEAR(my.recovery, row[6], 1e-9) << row[1];
  }
}

TEST_F(World, OurPlayersTireAndTheOthersRest) {
  world.ourTeam[3].stamina = 1210;
  world.otherTeam[3].stamina = 1000;
  world.ball.pos = {3, 4};
  world.my.pos = {1, 1};
  world.simCycle();
  EXPECT_EQ(world.oldBallRelpos, Vector2d(2, 3));
  EXPECT_EQ(std::pair(world.ourTeam[1].stamina, world.ourTeam[3].stamina), std::pair(3945., 1200.));
  EXPECT_EQ(std::pair(world.otherTeam[1].stamina, world.otherTeam[3].stamina),
            std::pair(4000., 1045.));
}

TEST_F(World, EveryCounterGrowsByACycleUpToNever) {
  const auto counters = [&](auto&&... all) {
    for (const int before : {NEVER - 1, int{NEVER}}) {
      ((all = before), ...);
      world.simCycle();
      EXPECT_TRUE(((all == NEVER) && ...));
    }
  };
  counters(world.cyclesSinceCatch, world.cyclesSincePointTo, world.visualAge, world.vAge[9],
           world.aOppAge[0], world.aOurAge[9], world.my.age, world.my.cyclesSinceTackle,
           world.ball.age, world.ourGoal.age, world.otherGoal.age, world.ourTeam[1].age,
           world.ourTeam[11].bodyAge, world.otherTeam[11].cyclesSinceTackle);
}

TEST_F(World, BallBouncesOffAPlayer) {
  world.my = WPlayer({-0.1, 0}, {0.1, 0});
  world.ball = WBall({1.2, 0}, {-1, 0});
  act(NO_COMMAND, 0);
  // At a distance of 0.2 pushed apart to 1.0001 * 0.385 around their middle.
  EXPECT_TRUE(near(world.my.pos, {0.1 - 0.19251925, 0}) && near(world.my.v, {-0.004, 0}));
  EXPECT_TRUE(near(world.ball.pos, {0.1 + 0.19251925, 0}) && near(world.ball.v, {0.094, 0}));
}

TEST_F(World, VoicesGoRoundTheirRingsAndThePenaltySideIsHeardOnce) {
  world.my.faceDir = 1;
  for (int i = 0; i < 11; ++i) take("(hear 1 " + std::to_string(6 * i) + " opp \"a\")");
  for (const char* voice : {"opp)", "-90 our 3 \"a\")"}) take("(hear 1 " + std::string(voice));
  EXPECT_EQ(world.aOppCounter, 1);
  EXPECT_NEAR(world.aOppDir[0], 1 + PI / 3, 1e-9);
  EXPECT_EQ(std::tuple(world.aOurCounter, world.aOurAge[0], world.aOppAge[1]), std::tuple(1, 0, 0));
  for (const std::string call : {"play_on)", "penalty_onfield_r)", "penalty_onfield_l)"})
    take("(hear 1 referee " + call);
  EXPECT_EQ(world.penaltySide, SIDE_RIGHT);
}

TEST_F(World, TheQueueIsTakenBehindTheTypesThatItHadToDrop) {
  setEntry("async_waitForSeeTime", "40");
  TextServer server;
  Comm comm("Alpha", CLIENT_ONLINECOACH, server, 0, false, 7, 8, SIDE_RIGHT);
  const StderrCapture errors;
  for (int i = 1; i < SensorDataStore::SIZE; ++i)
    comm.store->put(parsed(playerType(i == 1 ? 1 : 2)));
  comm.store->put(parsed("(see_global 5 ((b) 0 0))"));  // drops the first
  Worldmodel told = newWorld(3, "11", &comm);
  told.adjust();
  EXPECT_EQ(std::pair(told.playerType[1].state, told.playerType[2].state), std::pair(1, 2));
  EXPECT_EQ(told.time, 5);
}

// The signature of a recorded player holds what a body sense tells of the body.
TEST_F(World, ACommandTakesEffectWithTheBodySenseUnlessItIsOldOrLost) {
  int turns = 1;
  const auto sense = [&](int time) {
    take("(sense_body " + std::to_string(time) + " (turn " + std::to_string(turns) + "))",
         CLIENT_FIELDPLAYER);
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
  state.actionLost = false;
  state.lastAction.time = 10;
  EXPECT_NEAR(sense(11), 1, 1e-9) << "a turn that the server has not counted has none either";
  turns = 2;
  state.lastAction.time = 11;
  EXPECT_NEAR(sense(12), 2, 1e-9);
  sense(3);
  EXPECT_EQ(world.time, 12) << "too old";
}

}  // namespace
}  // namespace vok::test
