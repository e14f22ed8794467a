#include "worldobjects.h"

#include <gtest/gtest.h>

#include <tuple>

#include "support/world.h"

namespace vok::test {
namespace {

TEST(WorldObjects, CorridorIsABandInAConeWithADiscAtItsEnd) {
  // The last two have directions on either side of pi, and a corridor that is a disc alone.
  const std::tuple<Vector2d, Vector2d, double, double, bool> cases[] = {
      {{5, 0.9}, {10, 0}, PI / 4, 0.9, true},    {{5, 1.1}, {10, 0}, PI / 4, 1.1, false},
      {{10.9, 0}, {10, 0}, PI / 4, 0.9, true},   {{-0.5, 0}, {10, 0}, PI / 4, 0.5, false},
      {{0.5, 0.9}, {10, 0}, PI / 4, 0.9, false}, {{-5, -0.5}, {-10, 0}, 0.2, 0.5, true},
      {{0.1, 0.9}, {0.8, 0}, PI, 0.9, false},    {{11, 0}, {10, 0}, PI / 4, 1, true}};
  for (const auto& [pos, target, alpha, toLine, inside] : cases) {
    EXPECT_EQ(WObject(pos).inCorridor({0, 0}, target, 2, alpha), inside) << pos.x;
    EXPECT_NEAR(WObject(pos).distToLine({0, 0}, target), toLine, 1e-9) << pos.x;
  }
}

TEST(WorldObjects, BallCrossesTheGoalLineOnlyWhenItRollsBeyondIt) {
  // Crosses at y = 2.5; stops on the line; lies on it.
  const std::tuple<Vector2d, Vector2d, double, bool> cases[] = {{{-50, 0}, {-2.5, 2.5}, 2.6, true},
                                                                {{-50, 0}, {-2.5, 2.5}, 2.4, false},
                                                                {{-50, 0}, {-1.25, 0}, 7, false},
                                                                {{-52.5, 0}, {-1, 0}, 7, false}};
  for (const auto& [pos, v, distance, crosses] : cases) {
    WBall ball(pos, v);
    ball.decay = 0.5;  // rolls twice its speed
    EXPECT_EQ(ball.willCrossOurGoalLine(distance), crosses) << pos.x << " " << v.x;
  }
}

TEST(WorldObjects, CatchReachesARectangleAheadInOurPenaltyArea) {
  const std::tuple<Vector2d, Vector2d, double, bool> cases[] = {
      {{-45, 0}, {-43.5, 0.4}, 0, true},    {{-45, 0}, {-43.5, 0.6}, 0, false},
      {{-45, 0}, {-42.9, 0}, 0, false},     {{-45, 0}, {-45.1, 0}, 0, false},
      {{-45, 0}, {-45, 0.5}, PI / 2, true}, {{-45, 0}, {-45, 1.5}, PI / 2, true},
      {{-40, 20}, {-39, 20.16}, 0, true},   {{-37, 0}, {-35.9, 0}, 0, false},
      {{-37, 0}, {-36, 0}, 0, true}};
  for (const auto& [keeper, ball, angle, catchable] : cases)
    EXPECT_EQ(WPlayer(keeper, {}).ballCatchable(WBall(ball, {}), angle), catchable) << ball.x;
}

TEST(WorldObjects, AnglesCountFromThePlayersPlaceAndDirections) {
  WPlayer player({10, 5}, {});
  player.bodyDir = Angle(0.25);
  player.faceDir = Angle(0.75);
  EXPECT_NEAR(player.bodyAngleTo({10, 15}), PI / 2 - 0.25, 1e-9);
  EXPECT_NEAR(player.faceAngleTo({10, 15}), PI / 2 - 0.75, 1e-9);
}

TEST(WorldObjects, TackleFailsWithTheDistanceInEachDirection) {
  const std::tuple<Vector2d, int, double> cases[] = {
      {{1.25, 0}, 6, 0.984375}, {{-0.25, 0}, 6, 0.984375}, {{0, -0.625}, 6, 0.984375},
      {{2.6, 0}, 6, 0},         {{-0.25, 0}, 3, 1},        {{0, 0}, 0, 0}};
  for (const auto& [ball, exponent, prob] : cases) {
    TACKLE_EXP = exponent;
    EXPECT_NEAR(WPlayer({}, {}).tackleProb(WBall(ball, {})), prob, 1e-9) << ball.x;
  }
  TACKLE_EXP = 6;
  TACKLE_BACK_DIST = 0;
  EXPECT_NEAR(WPlayer({}, {}).tackleProb(WBall({0, 0.625}, {})), 0.984375, 1e-9) << "at its side";
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
  EXPECT_EQ(player.age + player.cyclesSinceTackle + player.coneTime, 0);

  // From afar only a shape is seen: what is known stays, but for a run between two places.
  SensorPlayer shape;
  shape.dist = 40;
  player.setBySensorData(shape, my, FUZZY, PLAY_MODE_PLAY_ON);
  EXPECT_EQ(std::tuple(player.number, player.isGoalie, player.v == Vector2d()),
            std::tuple(7, GOALIE_TRUE, false));
  player.setBySensorData(shape, my, FUZZY, PLAY_MODE_BEFORE_KICK_OFF);
  EXPECT_EQ(player.v, Vector2d());
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

TEST(WorldObjects, AnActionKeepsNothingOfTheOneBefore) {
  WAction action;
  action.store({1, KICK_COMMAND, 80, 1});
  action.store({2, DASH_COMMAND, 60, 0});
  EXPECT_EQ(std::tuple(action.command, action.power, action.moment),
            std::tuple(DASH_COMMAND, 60, 0));
}

}  // namespace
}  // namespace vok::test
