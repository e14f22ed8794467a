#include "worldobjects.h"

#include <gtest/gtest.h>

#include <tuple>

#include "support/world.h"

namespace vok::test {
namespace {

WPlayer playerAt(Vector2d pos, double bodyDir) {
  WPlayer player(pos, {});
  player.bodyDir = bodyDir;
  return player;
}

TEST(WorldObjects, CorridorIsABandInAConeWithADiscAtItsEnd) {
  const std::tuple<Vector2d, Vector2d, double, double, bool> cases[] = {
      {{5, 0.9}, {10, 0}, PI / 4, 0.9, true},
      {{5, 1.1}, {10, 0}, PI / 4, 1.1, false},
      {{10.9, 0}, {10, 0}, PI / 4, 0.9, true},
      {{11.1, 0}, {10, 0}, PI / 4, 1.1, false},
      {{-0.5, 0}, {10, 0}, PI / 4, 0.5, false},
      {{0, 0}, {10, 0}, 0, 0, true},
      {{0.5, 0.9}, {10, 0}, PI / 4, 0.9, false},
      // Directions on either side of pi, then corridors so short that they are a disc alone.
      {{-5, -0.5}, {-10, 0}, 0.2, 0.5, true},
      {{-0.1, 0}, {0.8, 0}, PI, 0.1, true},
      {{0.1, 0.9}, {0.8, 0}, PI, 0.9, false}};
  for (const auto& [pos, target, alpha, toLine, inside] : cases) {
    EXPECT_EQ(WObject(pos).inCorridor({0, 0}, target, 2, alpha), inside) << pos.x;
    EXPECT_NEAR(WObject(pos).distToLine({0, 0}, target), toLine, 1e-9) << pos.x;
  }
}

TEST(WorldObjects, BallCrossesTheGoalLineOnlyWhenItRollsBeyondIt) {
  const std::tuple<Vector2d, Vector2d, double, bool> cases[] = {
      // Crosses at y = 2.5; stops on the line; lies on it; rolls away.
      {{-50, 0}, {-2.5, 2.5}, 2.6, true},
      {{-50, 0}, {-2.5, 2.5}, 2.4, false},
      {{-50, 0}, {-1.25, 0}, 7, false},
      {{-52.5, 0}, {-1, 0}, 7, false},
      {{-50, 0}, {2.5, 0}, 7, false}};
  for (const auto& [pos, v, distance, crosses] : cases) {
    WBall ball(pos, v);
    ball.decay = 0.5;  // rolls twice its speed
    EXPECT_EQ(ball.willCrossOurGoalLine(distance), crosses) << pos.x << " " << v.x;
  }
}

TEST(WorldObjects, CatchReachesARectangleAheadInOurPenaltyArea) {
  const std::tuple<Vector2d, Vector2d, double, double, bool> cases[] = {
      {{-45, 0}, {-43.5, 0.4}, 0, 0, true},  {{-45, 0}, {-43.5, 0.6}, 0, 0, false},
      {{-45, 0}, {-42.9, 0}, 0, 0, false},   {{-45, 0}, {-45.1, 0}, 0, 0, false},
      {{-45, 0}, {-45, 1.5}, 0, 0, false},   {{-45, 0}, {-45, 1.5}, 0, PI / 2, true},
      {{-37, 0}, {-35.9, 0}, 0, 0, false},   {{-37, 0}, {-36, 0}, 0, 0, true},
      {{-40, 20}, {-39, 20.16}, 0, 0, true}, {{-52, 0}, {-53, 0}, PI, 0, true}};
  for (const auto& [keeper, ball, bodyDir, angle, catchable] : cases)
    EXPECT_EQ(playerAt(keeper, bodyDir).ballCatchable(WBall(ball, {}), angle), catchable) << ball.x;
}

TEST(WorldObjects, KickIsWeakerAsideAndAwayFromTheBody) {
  // A quarter of the circle aside and 0.3 m of the 0.7 m margin away; touching ahead.
  const WPlayer player = playerAt({0, 0}, 0);
  EXPECT_NEAR(player.kickPowerRate(WBall({0, 0.685}, {})), 0.0207321, 1e-6);
  EXPECT_NEAR(player.kickPowerRate(WBall({0.385, 0}, {})), 0.027, 1e-9);
}

TEST(WorldObjects, TackleFailsWithTheDistanceInEachDirection) {
  const std::tuple<Vector2d, double, int, double> cases[] = {
      {{1.25, 0}, 0, 6, 0.984375},   {{-0.25, 0}, 0, 6, 0.984375},
      {{0, -0.625}, 0, 6, 0.984375}, {{0, 1.25}, PI / 2, 6, 0.984375},
      {{2.6, 0}, 0, 6, 0},           {{1.25, 0}, 0, 3, 0.875},
      {{-0.25, 0}, 0, 3, 1},         {{0, 0}, 0, 0, 0}};
  for (const auto& [ball, bodyDir, exponent, prob] : cases) {
    TACKLE_EXP = exponent;
    EXPECT_NEAR(playerAt({0, 0}, bodyDir).tackleProb(WBall(ball, {})), prob, 1e-9) << ball.x;
  }
}

TEST(WorldObjects, ASeenPlayerIsPlacedByItsQuantisedDistanceAndChanges) {
  WPlayer my({10, 0}, {0.1, 0});
  my.faceDir = PI / 2;
  const SensorPlayer seen =  // between exp(2.25) and exp(2.35) away
      parsed("(see 1 ((p \"Alpha\" 7 goalie) 10 0 0.2 2 180 60 -60 t))", CLIENT_FIELDPLAYER)
          .player[0];
  WPlayer player;
  player.setBySensorData(seen, my, VISUAL, PLAY_MODE_PLAY_ON);
  EXPECT_LT((player.pos - Vector2d(10, 9.98665)).getLength(), 1e-4);
  EXPECT_LT((player.v - Vector2d(0.1 - 2 * PI / 180 * 9.98665, 0.2)).getLength(), 1e-4);
  EXPECT_NEAR(player.bodyDir, -PI / 2, 1e-9);
  EXPECT_NEAR(player.faceDir, PI / 2 + PI / 3, 1e-9);
  EXPECT_NEAR(player.pointDir, PI / 2 - PI / 3, 1e-9);
  EXPECT_EQ(player.age + player.cyclesSinceTackle, 0);
  EXPECT_EQ(player.state, VISUAL);

  // From afar only a shape is seen: what is known stays, but for a run between two places.
  SensorPlayer shape;
  shape.dist = 40;
  for (const play_mode mode : {PLAY_MODE_PLAY_ON, PLAY_MODE_BEFORE_KICK_OFF}) {
    player.setBySensorData(shape, my, FUZZY, mode);
    EXPECT_EQ(std::tuple(player.number, player.isGoalie, player.bodyAge),
              std::tuple(7, GOALIE_TRUE, 0));
    EXPECT_EQ(player.v == Vector2d(), mode == PLAY_MODE_BEFORE_KICK_OFF);
  }
}

TEST(WorldObjects, ASeenVelocityStaysWithinTheLimitAndIsOursAtOurPlace) {
  const WPlayer my({0, 0}, {0.3, 0.4});
  WBall ball({4, 3}, {});
  ball.calcVelocity(my, -10, 0);
  EXPECT_NEAR(ball.v.getLength(), BALL_SPEED_MAX, 1e-9);
  EXPECT_LT(ball.v.x, 0);
  ball.pos = my.pos;
  ball.calcVelocity(my, -10, 1);
  EXPECT_EQ(ball.v, my.v);
}

}  // namespace
}  // namespace vok::test
