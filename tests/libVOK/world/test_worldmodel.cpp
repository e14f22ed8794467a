#include "worldmodel.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numbers>
#include <tuple>
#include <vector>

#include "Comm.h"
#include "mcommand.h"
#include "support/server.h"
#include "support/world.h"

namespace vok::test {
namespace {

/// A world of three player types and substitution rings of eleven.
class World : public testing::Test {
 protected:
  void take(const std::string& text) { world.adjust(parsed(text)); }
  void view(long time, const std::string& objects = "((b) 0 0 0 0)") {
    take("(see_global " + std::to_string(time) + " " + objects + ")");
  }

  void place(goalie_player goalie, Vector2d pos, Vector2d v, const WBall& its) {
    my.isGoalie = goalie;
    my.pos = pos;
    my.v = v;
    ball = its;
  }

  /// One cycle in which our number 7 sends a command.
  void act(CycleCommand command, double param1, double param2 = 0) {
    my.number = 7;
    world.action.store({0, command, param1, param2});
    world.simCycle();
  }

  Worldmodel world = newWorld(3);
  WPlayer& my = world.my;
  WBall& ball = world.ball;
};

TEST_F(World, ConfiguredTeamSizesAreCutToATeam) {
  EXPECT_EQ(newWorld(0, "15").maxPlayersOurTeam, 11);
  EXPECT_EQ(newWorld(0, "-3").maxPlayersOtherTeam, 0);
}

// Ball and players of a view are held by the fuzzers' good cycle.
TEST_F(World, ViewIsTurnedForATeamOnTheRight) {
  world.ourSide = SIDE_RIGHT;
  view(3, "((p \"Alpha\" 4) 0 0 0 0 401 30) ((g l) 52 0)");
  EXPECT_NEAR(world.ourTeam[4].bodyDir, 41 * PI / 180, 1e-9);  // directions stay as they were sent
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

TEST_F(World, ChangedPlayersTakeAnnouncedTypesAndAreCounted) {
  for (const int id : {-1, 1, 3}) {
    SensorData data;
    data.type = SENSOR_TYPE_PLAYER_TYPE;
    data.playerType = {id, 1.1, 40, 0.4, 5, 0.006, 0.3, 0.8, 0, 50, 1, 0.6};
    world.adjust(data);
  }
  EXPECT_DOUBLE_EQ(world.playerType[1].playerSpeedMax, 1.0);  // 100 * 0.006 / (1 - 0.4)
  EXPECT_EQ(reachableSpeed(1.1, 0.006, 1.2), 1.1) << "of who never slows down";
  my.number = 8;
  take("(change_player_type 8, 1)");
  EXPECT_EQ(world.ourTeam[8].type, 1);
  EXPECT_DOUBLE_EQ(world.ourTeam[8].kickableMargin, 0.8);
  EXPECT_DOUBLE_EQ(my.kickableMargin, 0.8);
  StderrCapture errors;
  take("(change_player_type 4, 2)");
  EXPECT_EQ(errors.take(), "Nr. 8 : Player 4 was changed to type 2, but I don't know that type!\n");
  EXPECT_EQ(std::pair(world.ourTeam[4].type, world.numOurSubs), std::pair(-1, 1));

  world.time = 30;
  world.otherTeam[1].setType(world.playerType[1]);
  for (const char* odd : {"0)", "12)", "3, 3)"}) take("(change_player_type " + std::string(odd));
  for (int n = 0; n <= 11; ++n) take("(change_player_type " + std::to_string(n % 11 + 1) + ")");
  EXPECT_DOUBLE_EQ(world.otherTeam[1].kickableMargin, KICKABLE_MARGIN);
  EXPECT_EQ(world.numOtherSubs, 12);  // so the ring of eleven came round
  EXPECT_EQ(std::pair(world.otherSubs[0].number, world.otherSubs[1].number), std::pair(1, 2));
  EXPECT_EQ(world.otherSubs[10].time, 30);
  EXPECT_EQ(errors.take(), "");
}

TEST_F(World, DashIsLimitedByStaminaAndCostsDoubleBackwards) {
  // Power and stamina; then x and stamina. The tired have lost some recovery: 0.998 * 45.
  const std::tuple<double, double, double, double> cases[] = {{100, 4000, 0.6, 3945},
                                                              {-100, 4000, -0.6, 3845},
                                                              {-100, 50, -0.15, 44.91},
                                                              {0, 1100, 0, 1144.91}};
  for (const auto& [power, stamina, x, staminaAfter] : cases) {
    world = newWorld(3);
    ball.pos = {20, 0};
    my.stamina = stamina;
    act(DASH_COMMAND, power);
    EXPECT_TRUE(near(my.pos, {x, 0})) << my.pos.x;
    EXPECT_TRUE(near(my.v, {x * 0.4, 0})) << my.v.x;
    EXPECT_NEAR(my.stamina, staminaAfter, 1e-9) << power;
    EXPECT_NEAR(my.effort, stamina > 1200 ? 1 : 0.995, 1e-9) << power;
    EXPECT_TRUE(near(world.ourTeam[7].pos, my.pos));
  }
}

TEST_F(World, KickNeedsTheBallInReachAndTurnLosesToInertia) {
  ball.pos = {0.5, 0};
  act(KICK_COMMAND, 100, PI / 2);  // 100 * 0.027 * (1 - 0.25 * 0.115 / 0.7)
  EXPECT_TRUE(near(ball.v, {0, 2.5891071 * 0.94})) << ball.v.y;
  act(KICK_COMMAND, 100, PI / 2);  // out of reach
  EXPECT_TRUE(near(ball.v, {0, 2.5891071 * 0.94 * 0.94})) << ball.v.y;
  my.v = {0.4, 0};
  act(TURN_COMMAND, PI / 2);  // divided by 1 + 5 * 0.4
  EXPECT_NEAR(my.bodyDir, PI / 6, 1e-9);
}

TEST_F(World, ACatchIsForAGoaliesHandsAndNotToBeRepeatedSoon) {
  // Goalie, x of the ball, cycles since a catch before; x of the ball and cycles after.
  const std::tuple<goalie_player, double, long, double, long> cases[] = {
      {GOALIE_TRUE, -44, CATCH_BAN_CYCLES + 1, -44.515, 1},  // touches the goalie's next place
      {GOALIE_TRUE, -44, CATCH_BAN_CYCLES, -44, CATCH_BAN_CYCLES + 1},
      {GOALIE_TRUE, -42, NEVER, -42, 1},
      {GOALIE_FALSE, -44, NEVER, -44, NEVER}};
  for (const auto& [goalie, ballX, before, xAfter, after] : cases) {
    place(goalie, {-45, 0}, {0.1, 0}, WBall({ballX, 0}, {0, 0.1}));
    world.cyclesSinceCatch = before;
    act(CATCH_COMMAND, 0);
    EXPECT_NEAR(ball.pos.x, xAfter, 1e-9) << ballX;
    EXPECT_EQ(ball.v == Vector2d(), xAfter == -44.515);
    EXPECT_EQ(world.cyclesSinceCatch, after) << ballX;
    EXPECT_TRUE(near(my.v, {0.04, 0})) << "touching is no collision";
  }
}

TEST_F(World, AMoveNeedsAnInterruptionAndTheGoalieTakesTheBallAlong) {
  // Mode, goalie, x of the ball; whether it moves, x of the ball then.
  const std::tuple<play_mode, goalie_player, double, bool, double> cases[] = {
      {PLAY_MODE_BEFORE_KICK_OFF, GOALIE_FALSE, 0.5, true, 0.5},
      {PLAY_MODE_GOAL_US, GOALIE_FALSE, 0.5, true, 0.5},
      {PLAY_MODE_PLAY_ON, GOALIE_TRUE, 0.5, false, 0.5},
      {PLAY_MODE_FREE_KICK_US, GOALIE_FALSE, 0.5, false, 0.5},
      {PLAY_MODE_FREE_KICK_US, GOALIE_TRUE, 0.5, true, -9.5},
      {PLAY_MODE_FREE_KICK_US, GOALIE_TRUE, 1.5, true, 1.5}};
  for (const auto& [mode, goalie, ballX, moves, ballXAfter] : cases) {
    world.playMode = mode;
    place(goalie, {}, {0, 0.1}, WBall({ballX, 0}, {}));
    act(MOVE_COMMAND, -10, 2);
    EXPECT_TRUE(near(my.pos, moves ? Vector2d(-10, 2) : Vector2d(0, 0.1))) << mode;
    if (!moves) continue;
    EXPECT_TRUE(near(ball.pos, {ballXAfter, ballXAfter < 0 ? 2.0 : 0.0})) << mode;
  }
}

TEST_F(World, ATacklerLiesStillAndADashingGoalieCarriesTheBall) {
  act(TACKLE_COMMAND, 50);
  EXPECT_EQ(my.cyclesSinceTackle, 1);
  act(TURN_COMMAND, 1);
  EXPECT_EQ(my.bodyDir, 0) << "it lies";
  my.cyclesSinceTackle = TACKLE_CYCLES + 1;
  act(TURN_COMMAND, 1);
  EXPECT_NEAR(my.bodyDir, 1, 1e-9);

  my.bodyDir = 0;
  world.playMode = PLAY_MODE_FREE_KICK_US;
  place(GOALIE_TRUE, {}, {}, WBall({0.5, 0}, {}));
  act(DASH_COMMAND, 50);
  EXPECT_TRUE(near(ball.pos, {0.8, 0})) << ball.pos.x;  // 50 * 0.006 further
}

TEST_F(World, EveryCounterGrowsByACycleUpToNever) {
  my.number = 0;
  std::vector<long*> longs = {&world.cyclesSinceCatch, &world.cyclesSincePointTo, &world.visualAge};
  for (auto* ring : {&world.vAge, &world.aOppAge, &world.aOurAge})
    longs.insert(longs.end(), {&ring->front(), &ring->back()});
  std::vector<int*> ages = {&my.age, &my.cyclesSinceTackle, &ball.age, &world.ourGoal.age,
                            &world.otherGoal.age};
  for (const int n : {1, 11}) {
    for (WPlayer* p : {&world.ourTeam[n], &world.otherTeam[n]})
      ages.insert(ages.end(), {&p->age, &p->bodyAge, &p->cyclesSinceTackle});
  }
  for (const long before : {NEVER - 2L, NEVER - 1L, long{NEVER}}) {
    for (long* age : longs) *age = before;
    for (int* age : ages) *age = static_cast<int>(before);
    world.simCycle();
    for (const long* age : longs) EXPECT_EQ(*age, std::min(before + 1, long{NEVER}));
    for (const int* age : ages) EXPECT_EQ(*age, std::min(before + 1, long{NEVER}));
  }
}

TEST_F(World, VoicesGoRoundTheirRingsAndThePenaltySideIsHeardOnce) {
  my.faceDir = 1;
  for (int i = 0; i < 11; ++i) take("(hear 1 " + std::to_string(6 * i) + " opp \"a\")");
  for (const char* voice : {"opp)", "-90 our 3 \"a\")", "referee play_on)",
                            "referee penalty_onfield_r)", "referee penalty_onfield_l)"})
    take("(hear 1 " + std::string(voice));
  EXPECT_EQ(world.aOppCounter, 1);
  EXPECT_NEAR(world.aOppDir[0], 1 + PI / 3, 1e-9);
  EXPECT_EQ(world.aOppAge[1], 0);
  EXPECT_EQ(std::pair(world.aOurCounter, world.aOurAge[0]), std::pair(1L, 0L));
  EXPECT_EQ(world.penaltySide, SIDE_RIGHT);
}

TEST_F(World, ASnapshotHasOneLineAPlayer) {
  view(3, "((p \"Beta\" 11 goalie) 0 0 0 0 0 0)");
  const std::string text = MSnapshot(world).encoded;
  EXPECT_EQ(count(text, "\n"), 23);
  EXPECT_TRUE(text.starts_with("(sn (world (time 3) ")) << text;
  EXPECT_EQ(count(text, "\n (our 11 (-33 -37) (0 0) (age 32000) (body 0) (type -1))\n"), 1) << text;
  EXPECT_EQ(count(text, "\n (other 11 (0 0) (0 0) (age 0) (body 0) (type -1) goalie)))"), 1)
      << text;
}

TEST_F(World, BallBouncesOffAPlayerButNotOffTheCoach) {
  for (const int number : {0, 7}) {
    place(GOALIE_FALSE, {-0.1, 0}, {0.1, 0}, WBall({1.2, 0}, {-1, 0}));
    my.number = number;
    world.simCycle();
    // At a distance of 0.2 pushed apart to 1.0001 * 0.385 around their middle.
    EXPECT_TRUE(near(my.pos, {number == 7 ? 0.1 - 0.19251925 : 0, 0})) << my.pos.x;
    EXPECT_TRUE(near(my.v, {number == 7 ? -0.004 : 0.04, 0})) << my.v.x;
    EXPECT_TRUE(near(ball.pos, {number == 7 ? 0.1 + 0.19251925 : 0.2, 0})) << ball.pos.x;
    EXPECT_TRUE(near(ball.v, {number == 7 ? 0.094 : -0.94, 0})) << ball.v.x;
  }
}

TEST_F(World, OurPlayersTireAndTheOthersRest) {
  world.ourTeam[3].stamina = 1210;
  world.otherTeam[3].stamina = 1000;
  world.simCycle();
  EXPECT_DOUBLE_EQ(world.ourTeam[1].stamina, 3945);
  EXPECT_DOUBLE_EQ(world.ourTeam[3].stamina, 1200);
  EXPECT_DOUBLE_EQ(world.otherTeam[1].stamina, 4000);
  EXPECT_DOUBLE_EQ(world.otherTeam[3].stamina, 1045);
}

TEST_F(World, QueueIsFoldedInBehindTheTypesItHadToDrop) {
  setEntry("async_waitForSeeTime", "40");
  Comm comm("Alpha", CLIENT_ONLINECOACH, "127.0.0.1", 1, 0, false, 7, 8, SIDE_RIGHT);
  comm.serverOK = false;  // nobody to say "(bye)" to
  comm.async->setStates(0, 0, PLAY_MODE_KICK_OFF_THEM, SIDE_RIGHT, false);
  comm.async->otherScore = 2;
  const StderrCapture errors;
  SensorData type;
  type.type = SENSOR_TYPE_PLAYER_TYPE;
  for (int i = 0; i < SensorDataStore::SIZE - 1; ++i) {
    type.playerType.player_type = i == 0 ? 1 : 2;
    type.playerType.player_size = i;
    comm.store->put(type);
  }
  comm.store->put(parsed("(see_global 5 ((b) 0 0))"));  // drops the first

  Worldmodel told = newWorld(3, "11", &comm);
  told.adjust();
  EXPECT_EQ(told.playerType[1].state, 1);
  EXPECT_EQ(told.playerType[2].playerSize, SensorDataStore::SIZE - 2);
  EXPECT_EQ(std::tuple(told.time, told.playMode, told.ourSide, told.otherScore),
            std::tuple(5, PLAY_MODE_KICK_OFF_THEM, SIDE_RIGHT, 2));

  comm.async->setStates(0, 5, PLAY_MODE_GOAL_US, SIDE_RIGHT, false);
  comm.async->ourScore = 1;
  told.adjust(parsed("(see_global 6 ((b) 0 0))"));
  EXPECT_EQ(std::pair(told.playMode, told.ourScore), std::pair(PLAY_MODE_GOAL_US, 1))
      << "as it stands at each view";
}

TEST_F(World, TheBodySenseCarriesAPlayersWorldOn) {
  setEntry("async_waitForSeeTime", "40");
  Comm comm("Alpha", CLIENT_FIELDPLAYER, "127.0.0.1", 1, 0, false, 7, 7, SIDE_LEFT);
  comm.async->setStates(5, 7, PLAY_MODE_PLAY_ON, SIDE_LEFT, false);
  comm.serverOK = false;
  Worldmodel told = newWorld(3, "11", &comm);
  told.time = 7;
  told.ball.age = 0;
  const auto sense = [&](int time, int stamina) {
    told.adjust(parsed("(sense_body " + std::to_string(time) + " (stamina " +
                           std::to_string(stamina) + " 1) (speed 0.5 30) (head_angle 45) (turn 1))",
                       CLIENT_FIELDPLAYER));
  };
  comm.async->setAction(TURN_COMMAND, 7, 1, 0, comm.async->processedAction);
  sense(8, 3000);
  EXPECT_EQ(std::tuple(told.time, told.ball.age, told.playMode, told.my.stamina, told.turnCount),
            std::tuple(8, 1, PLAY_MODE_PLAY_ON, 3000, 1));
  EXPECT_NEAR(told.my.bodyDir, 1, 1e-9) << "the turn has had its effect";
  EXPECT_NEAR(told.my.faceDir, 1 + PI / 4, 1e-9);
  EXPECT_NEAR(told.my.v.getAngle(), 1 + PI / 4 + PI / 6, 1e-9);

  sense(8, 3000);
  EXPECT_EQ(told.ball.age, 1) << "no second time";
  sense(9, 3000);
  EXPECT_NEAR(told.my.bodyDir, 1, 1e-9) << "the same turn does not count again";
  comm.async->setAction(TURN_COMMAND, 9, 1, 0, comm.async->processedAction);
  comm.async->lostAction = comm.async->processedAction;
  sense(10, 3000);
  EXPECT_NEAR(told.my.bodyDir, 1, 1e-9) << "a lost turn has none";
  EXPECT_EQ(told.visualAge, NEVER);
  told.adjust(parsed("(see 10 ((b) 1 0))", CLIENT_FIELDPLAYER));
  EXPECT_EQ(told.visualAge, 0);
  sense(3, 1);
  EXPECT_EQ(told.my.stamina, 3000) << "too old";
}

}  // namespace
}  // namespace vok::test
