// What a player makes of a situation: shots, passes, who goes to the ball, what the team does.
#include <gtest/gtest.h>

#include "goalshoteval.h"
#include "passeval.h"
#include "support/world.h"
#include "tacticalmodule.h"

namespace vok::test {
namespace {

class Situation : public testing::Test {
 protected:
  Situation() {
    BALL_SPEED_MAX = 3;
    CATCHABLE_AREA_L = 1.2;
    for (int n : {7, 9}) world->ourTeam[n].number = n;
    put(world->ourTeam[7], {0, 0});
    putBall({0, 0});
    be(7);
    world->adjustTacticalNumbers(1);
  }

  static void put(WPlayer& player, const Vector2d& pos, double bodyDir = 0) {
    player.pos = pos;
    player.bodyDir = bodyDir;
    player.age = player.bodyAge = 0;
  }
  void putBall(const Vector2d& pos, const Vector2d& v = {}) const {
    world->ball.pos = pos;
    world->ball.v = v;
    world->ball.age = 0;
    world->ball.state = VISUAL;
  }
  void be(int number) const { world->my = world->ourTeam[number]; }

  const std::unique_ptr<Worldmodel> world = coachsWorld();
  GoalShotEval shots;
  PassEval passes{&shots};
  TacticalModule tactical{world.get(), nullptr};
};

// A ball at x in front of the middle, the goalie at (52, y), and the bounds of the score.
TEST_F(Situation, ShotGoesWhereTheGoalieIsNot) {
  constexpr std::tuple<double, double, int, int> ROWS[] = {
      {45, 0, 80, 100},   // the corners are too far for the goalie
      {30, 0, 0, 10},     // he is there on time
      {30, 6, 30, 95},    // but hardly from a corner
      {45, 30, 95, 100},  // not in the goal
      {-20, 30, 0, 0},    // too far
  };
  for (const auto& [x, y, least, most] : ROWS) {
    putBall({x, 0});
    put(world->my, {x - 0.5, 0});
    put(world->otherTeam[1], {52, y}, PI / 2);
    world->otherTeam[1].isGoalie = GOALIE_TRUE;
    const GoalShot shot = shots.ourEval(world.get());
    EXPECT_GE(shot.score, least) << x << " " << y;
    EXPECT_LE(shot.score, most) << x << " " << y;
    if (y == 6) {
      EXPECT_LT(shot.target.y, 0);
    }
    // The same turned by half a turn threatens us as much.
    putBall({-x, 0});
    put(world->otherTeam[9], {-x + 0.5, 0}, PI);
    put(world->ourTeam[1], {-52, -y}, -PI / 2);
    EXPECT_EQ(shots.otherEval(world.get(), 9).score, shot.score) << x << " " << y;
  }
}

TEST_F(Situation, CornerToAimAtMovesInWithTheDistance) {
  const Vector2d post = shots.rightEdgeOfGoal;
  EXPECT_NEAR(shots.correctCorner(post, post).y, 7.01 - 0.5, 1e-9);
  EXPECT_NEAR(shots.correctCorner(post - Vector2d(200, 0), post).y, 7.01 - 2, 1e-9);
  EXPECT_NEAR(shots.correctCorner(post, shots.leftEdgeOfOurGoal).y, 5.01, 1e-9);
}

// Mate 9 at (x, 0), opponents 2 and 3 at the given places, 4 at the offside line.
TEST_F(Situation, PassArrivesWhereNoOpponentIsOnTheWay) {
  const std::tuple<double, Vector2d, Vector2d, int, int> ROWS[] = {
      {20, {40, 20}, {40, -20}, 95, 100},  // far away
      {20, {12, 0}, {40, -20}, 20, 95},    // on the straight way, but beside it is room
      {20, {14, 2}, {14, -2}, 0, 60},      // two in front of him
      {20, {19, 1}, {19, -1}, 0, 30},      // marked by two
      {26, {15, 30}, {17, 30}, 0, 0},      // offside
  };
  put(world->otherTeam[1], {50, 0});
  put(world->otherTeam[4], {25, 30});
  for (const auto& [x, first, second, least, most] : ROWS) {
    put(world->ourTeam[9], {x, 0});
    put(world->otherTeam[2], first);
    put(world->otherTeam[3], second);
    const Pass pass = passes.ourEvalProp(world.get(), 9);
    EXPECT_GE(pass.score, least) << first.x << " " << first.y;
    EXPECT_LE(pass.score, most) << first.x << " " << first.y;
    if (pass.score > 0) {
      EXPECT_EQ(pass.receiver, 9);
    }
    const Pass given = passes.evalPass(world.get(), pass.target, pass.speed, pass.kicks);
    EXPECT_EQ(given.score, pass.score);
  }
  EXPECT_EQ(passes.ourEvalProp(world.get(), 7).receiver, -1);
  EXPECT_EQ(passes.ourEvalProp(world.get(), 12).receiver, -1);
}

TEST_F(Situation, PassTakesAsLongAsTheBallRolls) {
  constexpr std::tuple<double, double, int> ROWS[] = {{0, 1, 0},   {1, 1, 1},      {1.01, 1, 2},
                                                      {16, 1, 53}, {17, 1, NEVER}, {1, 0, NEVER}};
  for (const auto& [distance, speed, cycles] : ROWS) {
    EXPECT_EQ(PassEval::timeForPass(distance, speed), cycles) << distance;
  }
}

TEST_F(Situation, ScoreAndGradeAgree) {
  for (const GradeConstant grade : {PERFECT, GOOD, AVERAGE, POOR, BAD, IMPOSSIBLE}) {
    EXPECT_EQ(passes.scoreToGrade(passes.gradeToScore(grade)), Grade(grade));
    if (grade != IMPOSSIBLE) {
      EXPECT_NE(passes.scoreToGrade(passes.gradeToScore(grade) - 1), Grade(grade));
    }
  }
}

// Our 7 (an offender's edges are 3 and 6) and 2, and opponent 4, on a line with the ball between:
// who is responsible and how safe the ball is.
TEST_F(Situation, NearestToTheBallIsResponsibleAndHasItByHisLead) {
  constexpr std::tuple<double, double, double, play_mode, int, BallControlState> ROWS[] = {
      {-1, -20, 20, PLAY_MODE_PLAY_ON, 7, BC_SAFE},
      {-10, -20, 10, PLAY_MODE_PLAY_ON, 7, BC_DANGER},
      {-20, -10, 10, PLAY_MODE_PLAY_ON, 2, BC_DANGER},
      {-10, -20, 1, PLAY_MODE_PLAY_ON, 7, BC_LOST},
      {-1, -20, 20, PLAY_MODE_KICK_IN_THEM, 7, BC_LOST},
      {-10, -20, 1, PLAY_MODE_KICK_IN_US, 7, BC_SAFE},
  };
  for (const auto& [seven, two, four, mode, first, control] : ROWS) {
    put(world->ourTeam[7], {seven, 0});
    put(world->ourTeam[2], {two, 0});
    put(world->otherTeam[4], {four, 0}, PI);
    be(7);
    world->playMode = mode;
    tactical = {world.get(), nullptr};
    tactical.feedbackWorld();
    EXPECT_EQ(tactical.firstResponsiblePlayer, first) << seven << " " << two;
    EXPECT_EQ(tactical.secondResponsiblePlayer, 9 - first);
    EXPECT_EQ(tactical.thirdResponsiblePlayer, -1);
    EXPECT_EQ(tactical.firstDangerousOpponent, 4);
    EXPECT_EQ(tactical.ourBallControl, control) << seven << " " << two;
  }
}

TEST_F(Situation, ReceiverHearsOfThePassAndWhereTheBallComes) {
  tactical.playerPassInfo[9] = {GOOD, 2, -1, 0};
  const WBall kicked({0.5, 0}, {2, 1});
  tactical.reportOurTacticalAction(TA_PASS, 7, 9, kicked);
  std::array<char, PlayerMessage::LENGTH + 1> said{};
  EXPECT_EQ(tactical.determineMessageType(), MSGTYPE_SIM_ACTION);
  tactical.encodeAudio(tactical.determineMessageType(), said.data());
  EXPECT_EQ(std::string(said.data()).size(), PlayerMessage::LENGTH);
  EXPECT_EQ(tactical.determineMessageType(), MSGTYPE_NONE);  // just said
  tactical.feedbackWorld();
  EXPECT_EQ(tactical.ourAction.quality, TQ_REPORTED);

  put(world->ourTeam[9], {20, 10});
  be(9);
  putBall({2, 0});
  TacticalModule receiver(world.get(), nullptr);
  const std::string heard = "(hear 1 0 our 7 \"" + std::string(said.data()) + "\")";
  world->adjust(parsed(heard, CLIENT_FIELDPLAYER), {});
  receiver.feedbackWorld();
  EXPECT_EQ(receiver.ourAction.state, TA_PASS);
  EXPECT_EQ(receiver.ourAction.quality, TQ_AUDIAL_REPORTED);
  EXPECT_EQ(std::pair(receiver.ourAction.performer, receiver.ourAction.receiver), std::pair(7, 9));
  EXPECT_EQ(receiver.playerPassInfo[9].grade, Grade(GOOD));
  EXPECT_EQ(std::pair(receiver.playerPassInfo[9].xIndex, receiver.playerPassInfo[9].yIndex),
            std::pair(2, -1));
  EXPECT_LT((receiver.simulatedBall.v - kicked.v).getLength(), 0.1);
  EXPECT_FALSE(receiver.feedbackAudio());  // once only
  EXPECT_FALSE(receiver.decodeAudio("aaaaaaaaaa", 7));
  EXPECT_FALSE(receiver.decodeAudio(said.data(), 9));
}

// The age of the ball and where it is: the wish, and where the face then looks, in degrees.
TEST_F(Situation, PlayerLooksAtAnOldBallAndOtherwiseAround) {
  const std::tuple<int, Vector2d, TurnHeadWish, double> ROWS[] = {
      {0, {30, 30}, TH_AROUND, 0},
      {5, {30, 30}, TH_BALL, 45},
      {3, {30, 30}, TH_AROUND, 0},
      {5, {-30, 30}, TH_BALL, 90},  // as far as the neck goes
  };
  for (const auto& [age, ball, wish, degrees] : ROWS) {
    putBall(ball);
    world->ball.age = age;
    EXPECT_EQ(tactical.calcTurnHead(), wish) << age;
    if (wish != TH_BALL) continue;
    EXPECT_NEAR(toDegrees(tactical.turnHeadMoment(wish)), degrees, 1e-6);
    world->my.headAngle = 0.5;
    EXPECT_NEAR(toDegrees(tactical.turnHeadMoment(wish, 0.5)),
                std::min(toDegrees(-1) + toDegrees(Angle(ball.getAngle())), 90 - toDegrees(0.5)),
                1e-6);
    world->my.headAngle = 0;
  }
}

}  // namespace
}  // namespace vok::test
