#include <gtest/gtest.h>

#include <array>
#include <string>
#include <tuple>

#include "support/world.h"

namespace vok::test {
namespace {

class WorldAudio : public testing::Test {
 protected:
  static std::string encoded(const Worldmodel& from, MessageType type, const WBall& comball = {}) {
    char text[] = "..........";
    from.encodeAudio(type, text, comball);
    return text;
  }

  /// What the coach says at time 50 of a world with known goalies.
  AudioMsg coachMessage(int ourGoalie, int otherGoalie) {
    Worldmodel seen = newWorld(7);
    seen.ourGoalieNo = ourGoalie;
    seen.otherGoalieNo = otherGoalie;
    seen.ball.pos = {10, -5};
    seen.otherTeam[11].pos = {3.5, 33};
    const std::array types{-1, -1, -1, -1, 6, 7, -1, -1, -1, -1, -1, -1};  // 7 is not announced
    AudioMsg msg(0, 50, true);
    return msg << true << seen << types.data();
  }

  Worldmodel world = newWorld(7);
};

TEST_F(WorldAudio, PlayerTakesTheCoachsPictureButKeepsItself) {
  world.time = 51;
  world.my.number = 3;
  world.my.pos = {7, 7};
  world.ball.v = {1, 1};
  AudioMsg msg = coachMessage(5, 2);
  EXPECT_EQ(msg.getWritePos(), 1u + 2 + 4 + 88 + 11);
  ASSERT_TRUE(world.feedbackAudio(msg));
  EXPECT_TRUE(near(world.ball.pos, {10, -5}) && near(world.ball.v, {0, 0}) && world.ball.age == 0);
  EXPECT_TRUE(near(world.otherTeam[11].pos, {3.5, 33}) && near(world.ourTeam[3].pos, {7, 7}));
  EXPECT_EQ(world.ourTeam[5].tacticalNo, 1);
  EXPECT_EQ(world.otherTeam[2].isGoalie, GOALIE_TRUE);
  EXPECT_TRUE(world.otherTeam[4].type == 6 && world.otherTeam[5].type == -1);
}

TEST_F(WorldAudio, GoaliesAreLearntOnceAndOnlyWhenTheyAreShirtNumbers) {
  for (const int told : {-1, 0, 12, 11, 4}) {
    AudioMsg msg = coachMessage(told, told);
    EXPECT_TRUE(world.feedbackAudio(msg));
    EXPECT_EQ(world.ourGoalieNo, told == 11 || told == 4 ? 11 : -1) << told;
    EXPECT_EQ(world.otherGoalieNo, world.ourGoalieNo) << told;
  }
}

TEST_F(WorldAudio, OnlyWholeFreshMessagesOfTheCoachAreTaken) {
  world.time = 52;
  AudioMsg old = coachMessage(1, 1);
  AudioMsg empty(0, 52, true);
  empty << false;
  AudioMsg players(0, 52, false);
  players << true;
  EXPECT_EQ((players << world).getWritePos(), 1u) << "a player has no picture to send";
  for (AudioMsg* msg : {&old, &empty, &players}) EXPECT_FALSE(world.feedbackAudio(*msg));
  EXPECT_EQ(world.ball.age, NEVER);

  world.time = 51;
  old.rewindRead();
  old.setWritePos(1 + 2 + 4 + 5);  // in the first opponent's position
  EXPECT_FALSE(world.feedbackAudio(old));
  EXPECT_EQ(world.ourTeam[1].age, 0);
  EXPECT_EQ(world.otherTeam[1].age, NEVER);
}

TEST_F(WorldAudio, PlayersMessageIsTwoNumbersAndADistance) {
  world.my.pos = {-3, 4};
  world.ball = WBall({0, 0}, {0, 2});
  world.ball.age = 1;
  world.ball.state = VISUAL;
  // 4 + 10 * 135 + 1800 * 20 + 50400 = 64 + 74 * (1 + 74 * 16); 210 + 421 * 136; 5 * 73 / 64
  EXPECT_EQ(encoded(world, MSGTYPE_BALL), ".bqQKk...g");

  world.my.pos = {60, 45};
  world.ball = WBall({-60, 40}, {-3, 0});  // all beyond the scales, the ball was never seen
  EXPECT_EQ(encoded(world, MSGTYPE_ACTION), "NU I?u... ");

  world.my.pos = {0, 0};
  WBall planned({52.5, 34}, {0.3, -0.4});
  planned.age = 0;
  planned.state = VISUAL;
  EXPECT_EQ(encoded(world, MSGTYPE_SIM_ACTION, planned), "m4bk u...a");

  world.my.pos = {10.1, -5.3};
  world.my.stamina = 5000;
  EXPECT_EQ(encoded(world, MSGTYPE_POSITION), "RwhV*i....");
}

TEST_F(WorldAudio, HeardBallReplacesOnlyAnOlderOne) {
  // Behind the ball of our number 4, heard by an older and by a fresh one, are those of a
  // foreigner, a planned ball, a place beyond the grid, and no such type.
  const std::tuple<const char*, int, int, bool> cases[] = {
      {".bqQKk...a", 4, 2, true},  {".bqQKk...a", 4, 1, false}, {".bqQKk...a", 12, 2, false},
      {"m4bk u...a", 4, 2, false}, {".bq   ...a", 4, 2, false}, {"   QKk...a", 4, 2, false}};
  for (const auto& [text, sender, ageBefore, taken] : cases) {
    world.ball = WBall({30, 30}, {});
    world.ball.age = ageBefore;
    world.decodeAudio(text, sender, NO_ANGLE);
    EXPECT_EQ(world.ball.age, taken ? 1 : ageBefore) << text << sender;
    EXPECT_TRUE(near(world.ball.pos, taken ? Vector2d() : Vector2d(30, 30)));
    EXPECT_TRUE(near(world.ball.v, taken ? Vector2d(0, 2) : Vector2d()));
  }
}

TEST_F(WorldAudio, SpeakerIsWhereHeSaysOrWhereHisVoiceMeetsHisDistance) {
  world.my.number = 2;
  world.my.pos = {3, 4};
  world.ourTeam[6].stamina = 1;
  world.adjust(parsed("(hear 1 0 our 6 \"RwhV*i....\")"));
  world.adjust(parsed("(hear 1 0 our 7 \"RwhV*i...\")"));  // a character short
  EXPECT_TRUE(near(world.ourTeam[6].pos, {10, -5.25}));
  EXPECT_DOUBLE_EQ(world.ourTeam[6].stamina, 4000);
  world.decodeAudio(".bqQKk... ", 8, 0);  // 64 m from the centre on the line y = 4
  EXPECT_TRUE(near(world.ourTeam[8].pos, {63.874877, 4}));
  world.decodeAudio(".bqQKk...a", 9, 0);  // the line does not meet the circle
  world.decodeAudio(".bqQKk... ", 2, 0);  // our own words
  world.my.pos = {-70, 4};
  world.decodeAudio(".bqQKk... ", 10, 0);  // the line meets it twice ahead of us
  for (int n = 1; n <= 11; ++n)
    EXPECT_EQ(world.ourTeam[n].age, n == 6 || n == 8 ? 0 : int{NEVER}) << n;
}

}  // namespace
}  // namespace vok::test
