// What the world says and takes from what it hears. The characters of the coach's message are held
// by the page about it and by the coach's own tests.
#include <gtest/gtest.h>

#include <string>
#include <tuple>

#include "support/world.h"

namespace vok::test {
namespace {

class WorldAudio : public testing::Test {
 protected:
  std::string encoded(MessageType type) const {
    char text[] = "..........";
    world.encodeAudio(type, text, {});
    return text;
  }

  /// What the coach says at time 50 of a goalie of either team.
  static AudioMsg said(int goalie) {
    CoachMessage told;
    told.ourGoalie = told.otherGoalie = goalie;
    told.ball = {10, -5};
    told.otherTeam[11] = {3.5, 33};
    told.otherTypes[4] = 6;
    told.otherTypes[5] = 7;  // not announced
    AudioMsg msg(0, 50, true);
    told.write(msg);
    return msg;
  }

  Worldmodel world = newWorld(7);
};

TEST_F(WorldAudio, PlayerTakesTheCoachsPictureButKeepsItselfAndTheGoalies) {
  world.my.number = 3;
  world.my.pos = {7, 7};
  AudioMsg msg = said(5);
  ASSERT_TRUE(world.feedbackAudio(msg));
  EXPECT_TRUE(near(world.ball.pos, {10, -5}) && near(world.ourTeam[3].pos, {7, 7}));
  EXPECT_TRUE(near(world.otherTeam[11].pos, {3.5, 33}) && world.otherTeam[11].age == 0);
  EXPECT_TRUE(world.otherTeam[4].type == 6 && world.otherTeam[5].type == -1);
  msg = said(4);
  EXPECT_TRUE(world.feedbackAudio(msg) && world.ourGoalieNo == 5 && world.otherGoalieNo == 5);
}

TEST_F(WorldAudio, OnlyAWholeFreshMessageOfTheCoachChangesTheWorld) {
  world.time = 52;
  AudioMsg old = said(1), empty(0, 52, true), players(0, 52, false);
  empty << false;
  EXPECT_EQ((players << true << world).getWritePos(), 1u) << "a player has no picture to send";
  for (AudioMsg* msg : {&old, &empty, &players}) EXPECT_FALSE(world.feedbackAudio(*msg));

  // The kicker and the defenders behind the first 106 characters are not for the world.
  world.time = 51;
  for (const unsigned length : {105U, 106U}) {
    EXPECT_EQ(world.ball.age + world.ourTeam[1].age + world.ourGoalieNo, 2 * NEVER - 1) << length;
    AudioMsg cut = said(1);
    cut.setWritePos(length);
    EXPECT_EQ(world.feedbackAudio(cut), length == 106) << length;
  }
}

TEST_F(WorldAudio, PlayersMessageIsTwoNumbersAndADistance) {
  world.my.pos = {-3, 4};
  world.ball = WBall({0, 0}, {0, 2});
  world.ball.age = 1;
  world.ball.state = VISUAL;
  // 4 + 10 * 135 + 1800 * 20 + 50400 = 64 + 74 * (1 + 74 * 16); 210 + 421 * 136; 5 * 73 / 64
  EXPECT_EQ(encoded(MSGTYPE_BALL), ".bqQKk...g");

  world.my.pos = {60, 45};
  world.ball = WBall({-60, 40}, {-3, 0});  // all beyond the scales, the ball was never seen
  EXPECT_EQ(encoded(MSGTYPE_ACTION), "NU I?u... ");

  world.my.pos = {10.1, -5.3};
  world.my.stamina = 5000;
  EXPECT_EQ(encoded(MSGTYPE_POSITION), "RwhV*i....");
}

TEST_F(WorldAudio, HeardBallReplacesOnlyAnOlderOne) {
  // Behind the ball of our number 4, heard by an older and by a fresh one, are ours, then
  // a planned ball, a place beyond the grid, and no such type.
  const std::tuple<const char*, int, int, bool> cases[] = {
      {".bqQKk...a", 4, 2, true},  {".bqQKk...a", 4, 1, false}, {".bqQKk...a", 2, 2, false},
      {"m4bk u...a", 4, 2, false}, {".bq   ...a", 4, 2, false}, {"   QKk...a", 4, 2, false}};
  world.my.number = 2;
  for (const auto& [text, sender, ageBefore, taken] : cases) {
    world.ball = WBall({30, 30}, {});
    world.ball.age = ageBefore;
    world.decodeAudio(text, sender, NO_ANGLE);
    EXPECT_EQ(world.ball.age, taken ? 1 : ageBefore) << text << sender;
    EXPECT_TRUE(near(world.ball.pos, taken ? Vector2d() : Vector2d(30, 30)));
    EXPECT_TRUE(near(world.ball.v, taken ? Vector2d(0, 2) : Vector2d()));
  }
}

TEST_F(WorldAudio, SpeakerIsWhereHeSays) {
  world.my.number = 2;
  world.ourTeam[6].stamina = 1;
  world.ourTeam[6].age = 1;
  world.adjust(parsed("(hear 1 0 our 6 \"RwhV*i....\")"), {});
  world.adjust(parsed("(hear 1 0 our 7 \"RwhV*i...\")"), {});  // a character short
  EXPECT_TRUE(near(world.ourTeam[6].pos, {10, -5.25}));
  EXPECT_DOUBLE_EQ(world.ourTeam[6].stamina, 4000);
  EXPECT_EQ(world.ourTeam[7].age, NEVER);
}

TEST_F(WorldAudio, SpeakerOfTheBallIsWhereHisVoiceMeetsHisDistanceFromTheCentre) {
  // The listener's place, the direction of the voice, the told distance, the speaker's place.
  const std::tuple<Vector2d, double, char, Vector2d> rows[] = {
      {{3, 4}, 0, ' ', {63.874877, 4}},  // 64 m from the centre on the line y = 4
      {{3, 4}, 0, 'a', {}},              // the line does not meet the circle
      {{-70, 4}, 0, ' ', {}},            // or meets it twice ahead of us
      // A mate at (30.3, 0.6) says 30.7, and the line leaves that circle at (24.2, 18.8).
      {{30.5, 0}, Vector2d(-0.2, 0.6).getAngle(), 'J', {}},
      {{30.2, 0}, PI, 'J', {-35 * 64 / 73.0, 0}}};
  world.my.number = 2;
  for (const auto& [listener, direction, distance, place] : rows) {
    world.ourTeam[8] = WPlayer();
    world.my.pos = listener;
    world.decodeAudio((std::string(".bqQKk...") + distance).c_str(), 8, direction);
    EXPECT_TRUE(near(world.ourTeam[8].pos, place)) << listener.x << distance;
  }
}

}  // namespace
}  // namespace vok::test
