#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <tuple>

#include "Parser.h"
#include "support/server.h"

namespace vok::test {
namespace {

using std::string_view_literals::operator""sv;

/// The coach of "Alpha", and what it writes.
class ParserTest : public testing::Test {
 protected:
  bool parse(std::string_view text) {
    record = SensorData();
    return parser.parseServerString(text, record);
  }

  Parser parser{"Alpha", CLIENT_ONLINECOACH, 7, 8};
  SensorData record;
  StderrCapture errors;
};

TEST_F(ParserTest, TheHeadDecidesTypeAndTime) {
  const std::tuple<const char*, sensor_data_type, long> rows[] = {
      {"(see 12)", SENSOR_TYPE_STRANGE, 12},
      {"(ok look 6 ((b) 0 0 0 0))", SENSOR_TYPE_EXACT, 6},
      {"(fullstate 7 (x))", SENSOR_TYPE_ERROR, 7},
      {"(hear 8 our 3)", SENSOR_TYPE_HEAR, 8},
      {"(ok eye on)", SENSOR_TYPE_OK, -1},
      {"(think)", SENSOR_TYPE_OK, -1},
      {"(clang (ver (p \"Alpha\" 10) 7 8))", SENSOR_TYPE_CLANG_VER, -1},
      {"(error no_such_team)", SENSOR_TYPE_ERROR, -1},
      {"(warning no_subs_left)", SENSOR_TYPE_WARNING, -1}};
  for (const auto& [text, type, time] : rows) {
    EXPECT_TRUE(parse(text)) << text;
    EXPECT_EQ(std::tuple(record.type, record.time), std::tuple(type, time)) << text;
    EXPECT_EQ(record.think, text == "(think)"sv) << text;
  }
  EXPECT_EQ(errors.take(), "Parser: fullstate message received!\n");
}

TEST_F(ParserTest, RefusesWhatItDoesNotUnderstand) {
  std::string crowd;
  for (int i = 0; i < 23; ++i) crowd += "((p) 60 20)";
  const std::string unknown = "Parser: recvd unknown message from olcoach:";
  const std::pair<std::string, std::string> rows[] = {
      {"", ""},
      {"(", ""},
      {"(think", ""},
      {" (ok eye on)", ""},
      {"(see 99999999999)", ""},
      {"(see 12 ((b) 1 2))", ""},  // a player's, as the next
      {"(sense_body 1 (kick 1))", ""},
      {"(hear 3 ", ""},
      {"(hear 1 90 our 3)", ""},          // without a text
      {"(hear 120 referee goal_l)", ""},  // without a score
      {"(hear 1 online_coach_left (freeform \"a(b\"))", unknown + "\"(freeform \"a(b\"))\"\n"},
      {"(hear 1 online_coach_right (freeform \"ab", unknown + "\"(freeform \"ab\"\n"},
      {"(see_global 5 ((b) 0 0 0 0" + std::string(1, '\0') + "))",
       "Parser: malformed object: l=5 len=0\n'((b) 0 0 0 0'\n"},  // a NUL byte ends the text
      {"(see_global 1 ((g l) 0 0) ((g r) 0 0) ((g l) 0 0))", "Parser: to manny goals!\n"},
      {"(see_global 1 " + crowd + ")", "Parser: to manny players!\n"},
      {"(see_global 1 ((b) 3 0 0 0) ((f c) 0 0))", ""},
      {"(see_global 1 )", "Parser: malformed object: l=0 len=0\n')'\n"},
      {"(see_global 1 ((b) 1e999 0\n))", "Parser: malformed object: l=5 len=14\n'((b) 1e999 0'\n"}};
  for (const auto& [text, error] : rows) {
    EXPECT_FALSE(parse(text)) << text;
    EXPECT_EQ(errors.take(), error) << text;
  }
}

TEST_F(ParserTest, ATypeChangeIsOursOnlyBehindAComma) {
  const std::tuple<const char*, int, int, int, bool> rows[] = {
      {"(change_player_type 3 5)", 3, -1, 5, false},
      {"(change_player_type 3, 5)", 3, 5, 5, true},
      {"(change_player_type 4)", 4, -1, -1, false},
      {"(change_player_type 12, 5)", -1, 5, 5, true},
      {"(change_player_type x 7)", -1, -1, -1, false}};
  for (const auto& row : rows) {
    const char* text = std::get<0>(row);
    EXPECT_TRUE(parse(text));
    EXPECT_EQ(std::tuple(text, record.number, record.heteroType, record.announcedType,
                         record.ourTeamChanged),
              row);
  }
}

// The rest of a view is held against sscanf by fuzz_scanner.
TEST_F(ParserTest, AGlobalViewKnowsWhoseGoalsItSees) {
  parser.setSide(SIDE_RIGHT);
  ASSERT_TRUE(
      parse("(see_global 5 ((g l) -52.5 0) ((G r) 52.5 0) ((p \"Beta\" 7) 1 2 3 4 270 9))"));
  EXPECT_EQ(record.exactgoal[0].which, GOAL_LEFT);
  EXPECT_EQ(record.exactgoal[0].team, TEAM_THEM);
  EXPECT_EQ(record.exactgoal[1].team, TEAM_US);
  EXPECT_DOUBLE_EQ(record.exactplayer[0].body_dir, -PI / 2);
}

TEST_F(ParserTest, TheRefereeTellsModesScoresAndPenaltySides) {
  const std::tuple<const char*, play_mode, playing_side, int> rows[] = {
      {"penalty_onfield_l", PLAY_MODE_UNKNOWN, SIDE_LEFT, 0},
      {"penalty_onfield_r", PLAY_MODE_UNKNOWN, SIDE_RIGHT, 0},
      {"penalty_winner_r", PLAY_MODE_UNKNOWN, SIDE_UNKNOWN, 0},
      {"penalty_foul_l", PLAY_MODE_UNKNOWN, SIDE_UNKNOWN, 0},
      {"penalty_draw", PLAY_MODE_UNKNOWN, SIDE_UNKNOWN, 0},
      {"goal_l_2", PLAY_MODE_GOAL_US, SIDE_UNKNOWN, 2},
      {"goal_r_13", PLAY_MODE_GOAL_THEM, SIDE_UNKNOWN, 13},
      {"foul_r", PLAY_MODE_FREE_KICK_US, SIDE_UNKNOWN, 0}};
  for (const auto& row : rows) {
    const char* call = std::get<0>(row);
    EXPECT_TRUE(parse("(hear 120 referee " + std::string(call) + ")"));
    EXPECT_EQ(std::tuple(call, record.mode, record.penaltySide, record.score), row);
  }
  EXPECT_TRUE(parse("(hear 51 referee yellow_card_l_5)"));
  EXPECT_EQ(record.mode, PLAY_MODE_UNKNOWN);
  EXPECT_EQ(errors.take(), "Unknown Playmode: yellow_card_l_5)\n");
}

TEST_F(ParserTest, AVoiceFitsItsRoomAndComesFromADirection) {
  const std::string flood(8000, 'a');
  EXPECT_TRUE(parse("(hear 1 (p \"" + flood + "\" 3) \"" + flood + "\")"));
  EXPECT_EQ(record.sender_name.data(), std::string(512, 'a'));
  EXPECT_EQ(record.message.data(), std::string(512, 'a'));
  EXPECT_TRUE(parse("(hear 1 270 our 3 \"a\")"));
  EXPECT_DOUBLE_EQ(record.sender_dir, -PI / 2);
}

TEST_F(ParserTest, ACoachSpeaksFreelyOrInItsLanguage) {
  const std::string head = "(hear 138 online_coach_left ";
  const std::tuple<const char*, CoachMsgType, const char*> rows[] = {
      {"(freeform \"a b\"))", CMT_FREEFORM, "a b"},
      {"(advice (6000 (true) (hold))))", CMT_ADVICE, " (6000 (true) (hold))))"},
      {"(info x))", CMT_INFO, " x))"},
      {"(meta x))", CMT_META, " x))"},
      {"(define x))", CMT_DEFINE, " x))"},
      {"(unsupported_clang))", CMT_NONE, ""}};
  for (const auto& [text, type, message] : rows) {
    EXPECT_TRUE(parse(head + text));
    EXPECT_EQ(record.coachMsgType, type) << text;
    EXPECT_STREQ(record.message.data(), message);
  }
  EXPECT_TRUE(parse(head + "(info" + std::string(700, 'x')));
  EXPECT_EQ(record.message.data(), std::string(512, 'x'));
}

/// A field player of "Alpha" on the right.
class PlayerParserTest : public ParserTest {
 protected:
  PlayerParserTest() { player.setSide(SIDE_RIGHT); }

  bool parse(std::string_view text) {
    record = SensorData();
    return player.parseServerString(text, record);
  }

  Parser player{"Alpha", CLIENT_FIELDPLAYER, 7, 8};
};

// Most of a body sense is held by the fuzzers' good cycle.
TEST_F(PlayerParserTest, APlayerIsToldOfItsBody) {
  ASSERT_TRUE(parse(
      "(sense_body 12 (speed 0.4 -90) (arm (movable 9) (expires 10) (target 1.5 -2) (count 11))"
      " (focus (target r 7) (count 12)) (tackle (expires 13) (count 14)) (collision (ball) (x))"
      " (move 15) (catch 16))"));
  EXPECT_DOUBLE_EQ(record.speed_angle, -PI / 2);
  EXPECT_EQ(std::tuple(record.arm_target.x, record.arm_target.y, record.attentionToOurTeam,
                       record.attentionTo, record.arm_movable, record.arm_expires,
                       record.point_to_count, record.attention_to_count, record.tackle_expires,
                       record.tackle_count, record.move_count, record.catch_count),
            std::tuple(1.5, -2.0, true, 7, 9, 10, 11, 12, 13, 14, 15, 16));

  EXPECT_TRUE(parse("(sense_body 13 (focus (target none) (count 3)))"));
  EXPECT_EQ(record.attentionTo, 0);
}

TEST_F(PlayerParserTest, AViewHasTheWidthThatTheBodySenseTold) {
  const std::tuple<const char*, view_quality, view_width> modes[] = {
      {"high narrow", VIEW_QUALITY_HIGH, VIEW_WIDTH_NARROW},
      {"low normal", VIEW_QUALITY_LOW, VIEW_WIDTH_NORMAL},
      {"high wide", VIEW_QUALITY_HIGH, VIEW_WIDTH_WIDE},
      {"low other", VIEW_QUALITY_LOW, VIEW_WIDTH_NONE}};
  for (const auto& row : modes) {
    const char* mode = std::get<0>(row);
    EXPECT_TRUE(parse("(sense_body 12 (view_mode " + std::string(mode) + "))"));
    EXPECT_EQ(std::tuple(mode, record.my_view_quality, record.my_view_width), row);
    EXPECT_TRUE(parse("(see 12 ((b) 1 2))"));
    EXPECT_EQ(record.see_view_width, std::get<2>(row)) << mode;
  }
}

TEST_F(PlayerParserTest, APlayerSeesFromWhereItStands) {
  ASSERT_TRUE(
      parse("(see 12 ((f c) 10 -90) ((g r) 50 0) ((l b) 30 45) ((b) 3.5 180 0.2 -1)"
            " ((p \"Alpha\" 3 goalie) 5 10 0 1 90 -90 t) ((p \"Beta\") 40 20 90)"
            " ((p) 60 20) ((B) 1 2) ((p \"Beta\" 4) 20))"));
  EXPECT_DOUBLE_EQ(record.flag[FLAG_CENTER].dir, -PI / 2);
  EXPECT_DOUBLE_EQ(record.ball.dir_change, -PI / 180);
  EXPECT_EQ(std::tuple(record.ball.dist, record.ball.dist_change, record.line[LINE_BOTTOM].dist),
            std::tuple(3.5, 0.2, 30));
  const SensorGoal& goal = record.goal[GOAL_RIGHT];
  EXPECT_EQ(std::tuple(goal.valid, goal.team, goal.dist), std::tuple(true, TEAM_US, 50));
  EXPECT_FALSE(record.goal[GOAL_LEFT].valid);

  using Seen = std::tuple<team_number, int, goalie_player, double, double, double, bool>;
  const auto seen = [this](std::size_t i) {
    const SensorPlayer& p = record.player[i];
    return Seen(p.team, p.number, p.goalie, p.body_dir, p.face_dir, p.pointto_dir, p.tackle);
  };
  EXPECT_EQ(seen(0), Seen(TEAM_US, 3, GOALIE_TRUE, PI / 2, -PI / 2, NO_ANGLE, true));
  EXPECT_EQ(seen(1),
            Seen(TEAM_THEM, -1, record.player[2].goalie, NO_ANGLE, NO_ANGLE, PI / 2, false));
  EXPECT_EQ(record.player[2].team, TEAM_UNKNOWN);
  EXPECT_FALSE(record.player[3].valid) << "seen too badly for a distance";
}

TEST_F(PlayerParserTest, APlayerRefusesMalformedMessages) {
  // The timing takes differences of counts, which must not overflow.
  for (const char* items : {"(kick -1)", "(say 2147483647)", "(focus (target r 12) (count 0))",
                            "(stamina 1)", "(kick x)", "(speed 1 1e999)", "(arm (movable 0))",
                            "kick", "(kick 1", "(focus (target x))", "()"})
    EXPECT_FALSE(parse("(sense_body 12 " + std::string(items) + ")")) << items;
  std::string crowd;
  for (int i = 0; i < 22; ++i) crowd += "((p) 60 20)";
  const std::pair<std::string, const char*> rows[] = {
      {"(sense_body 12 (kick 1)", ""},
      {"(see 12 ((b) 1 2)", ""},
      {"(see 12 ((b) 1 1e999))", ""},
      {"(see 12 (b 1 2))", ""},
      {"(see 12 " + crowd + ")", "Parser: to manny players!\n"},
      {"(see 12 ((l t) 1 2)((l t) 1 2)((l t) 1 2)((l t) 1 2)((l t) 1 2))",
       "Parser: to manny lines!\n"},
      {"(see 12 ((x) 1 2))", "Parser: unknown object type\n"},
      {"(see_global 5 ((b) 0 0 0 0))", "Parser: received see message for coach\n"}};
  for (const auto& [text, error] : rows) {
    EXPECT_FALSE(parse(text)) << text;
    EXPECT_EQ(errors.take(), error) << text;
  }
}

}  // namespace
}  // namespace vok::test
