// The skills are asked in each cycle, and the world's own prediction shows what comes of it.
#include <cmath>

#include "advskills.h"
#include "support/world.h"

namespace vok::test {
namespace {

class Skills : public testing::Test {
 protected:
  Skills() {
    PLAYER_RAND = 0;
    BALL_SPEED_MAX = 3;
    world->my = WPlayer({0, 0}, {});
    world->my.number = 1;
    world->my.isGoalie = GOALIE_TRUE;
    put({20, 0}, {});
  }

  void put(const Vector2d& place, const Vector2d& v) { world->ball = WBall(place, v); }

  void run(const Command& command) {
    world->action = command.action();
    world->simCycle();
    ++world->time;
  }

  const std::unique_ptr<Worldmodel> world = coachsWorld();
  AdvSkills skills{*world};
};

// The default type dashes 0.6, 0.84, 0.936, ... m, up to 1 m a cycle: 9.33 m in ten cycles.
TEST_F(Skills, APlayerIsThereWhenItSaidSo) {
  EXPECT_EQ(skills.cyclesTo({9.83, 0}, 0.51), 10);
  EXPECT_EQ(skills.cyclesTo({9.83, 0}, 0.49), 11);
  EXPECT_EQ(skills.cyclesTo({200, 0}, 0.5), NEVER);
  for (const Vector2d& v : {Vector2d(0, 0), {0.4, 0}, {-0.2, 0.3}}) {
    for (const Vector2d& place : {Vector2d(10, 1), {-8, 3}, {0.7, -0.7}, {-30, -40}}) {
      world->my = WPlayer({0, 0}, v);
      world->my.number = 1;
      int cycles = 0;
      for (const int said = skills.cyclesTo(place, 0.5); cycles < said; ++cycles) {
        ASSERT_GT(world->my.distTo(place), 0.5) << place.x << ", after " << cycles;
        run(skills.runTo(place, 0.5));
      }
      EXPECT_LE(world->my.distTo(place), 0.5) << place.x << ", speed " << v.x;
    }
  }
}

// Ball, its velocity, and in how many cycles it is reached: 0.91 m before it, as far as it comes.
TEST_F(Skills, TheBallIsReachedAtTheEarliestCycle) {
  for (const auto& [place, v, cycles] : {std::tuple(Vector2d(10.2, 0), Vector2d(), 10),
                                         {Vector2d(10.3, 0), Vector2d(), 11},
                                         {Vector2d(10, 0), Vector2d(-1.5, 0), 5},
                                         {Vector2d(0.9, 0), Vector2d(), 0},
                                         {Vector2d(50, 0), Vector2d(2, 0), NEVER}}) {
    put(place, v);
    EXPECT_EQ(skills.interception().cycles, cycles) << place.x;
    if (cycles == NEVER) continue;
    for (int i = 0; i < cycles; ++i) run(skills.intercept());
    EXPECT_TRUE(world->my.ballKickable(world->ball)) << place.x;
    world->my = WPlayer({0, 0}, {});
    world->my.number = 1;
  }
  put({10.2, 0}, {});
  world->my.age = 4;
  EXPECT_EQ(interception(world->my, world->ball, {.ageAllowance = 3}).cycles, 7);
  world->my.bodyDir = PI;
  EXPECT_EQ(interception(world->my, world->ball).cycles, 10);  // a body not seen turns for nothing
}

// Ball, its velocity, the wanted speed, the kicks that it takes.
TEST_F(Skills, ThePlannedKicksGiveTheBallItsSpeed) {
  for (const auto& [place, v, speed, kicks] : {std::tuple(Vector2d(0.5, 0), Vector2d(), 1.5, 1),
                                               {Vector2d(-0.5, 0.1), Vector2d(), 2.9, 2},
                                               {Vector2d(0.3, 0.6), Vector2d(-1, 0.5), 3.0, 3},
                                               {Vector2d(3, 0), Vector2d(), 1.0, 0}}) {
    put(place, v);
    KickPlan plan = skills.kickTo({30, 10}, speed);
    EXPECT_EQ(plan.kicks, kicks) << place.x;
    for (int i = 0; i < kicks; ++i) {
      plan = skills.kickTo({30, 10}, speed);
      run(plan.command);
    }
    if (kicks == 0) continue;
    EXPECT_NEAR(world->ball.v.getLength() / BALL_DECAY, speed, 0.25) << place.x;
    EXPECT_NEAR(Angle(world->ball.v.getAngle()), (Vector2d(30, 10) - place).getAngle(), 0.05);
  }
  EXPECT_NEAR(startSpeed(10, 1), 1.6, 1e-9);
  EXPECT_EQ(rollingCycles(10, 1.6), 8);
  put({0.8, 0.3}, {-1, 1});
  run(skills.stopBall());
  EXPECT_LT(world->ball.v.getLength(), 1e-9);
}

TEST_F(Skills, ADribbleKeepsTheBallFromTheOpponents) {
  put({0.4, 0.4}, {});
  for (const auto& [opponent, dashes] : {std::pair(30.0, 5), {4.0, 1}, {1.5, 0}}) {
    world->otherTeam[5] = WPlayer({opponent, 0.5}, {});
    world->otherTeam[5].age = 0;
    const Dribble dribble = skills.dribble(0);
    EXPECT_LE(std::abs(dribble.dashes - dashes), dashes == 1) << opponent;
  }
}

TEST_F(Skills, TacklesAndCatchesWhereItMayAndHelps) {
  put({1, 0}, {});
  EXPECT_EQ(skills.tackle(0.9).kind, TACKLE_COMMAND);
  EXPECT_TRUE(skills.tackle(0.999).isNone());
  world->my.pos.x = -50;
  put({-49, 0}, {});
  EXPECT_EQ(skills.catchBall().kind, CATCH_COMMAND);
  world->my.bodyDir = PI;
  EXPECT_TRUE(skills.catchBall().isNone());
  put({-51, 0}, {});
  EXPECT_TRUE(skills.tackle(0.5).isNone());  // into our own goal
}

TEST_F(Skills, StaminaLastsUntilTheEndOfTheHalf) {
  EXPECT_NEAR(skills.energyLeft(), 0.68 * STAMINA_MAX + 130600, 1e-6);
  world->my.stamina = 0.32 * STAMINA_MAX + 30;
  EXPECT_NEAR(skills.walkTo({30, 0}, 1).power, 30, 1e-6);
  world->time += 1000;
  skills.feedbackWorld();
  EXPECT_NEAR(skills.staminaCapacity(), 130600 - 45 * 1000, 1e-6);
  world->playMode = PLAY_MODE_BEFORE_KICK_OFF;
  skills.feedbackWorld();
  EXPECT_NEAR(skills.staminaCapacity(), 130600, 1e-6);
}

}  // namespace
}  // namespace vok::test
