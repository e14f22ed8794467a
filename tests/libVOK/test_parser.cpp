#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <vector>

#include "Parser.h"
#include "support/server.h"

namespace vok::test {
namespace {

using std::string_view_literals::operator""sv;
constexpr double PI = 3.14159265358979323846;

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
  const struct {
    const char* text;
    sensor_data_type type;
    long time;
  } rows[] = {
      {"(see 12)", SENSOR_TYPE_STRANGE, 12},
      {"(see_global 5 ((b) 0 0 0 0))", SENSOR_TYPE_EXACT, 5},
      {"(ok look 6 ((b) 0 0 0 0))", SENSOR_TYPE_EXACT, 6},
      {"(fullstate 7 (x))", SENSOR_TYPE_ERROR, 7},
      {"(hear 8 our 3)", SENSOR_TYPE_HEAR, 8},
      {"(ok eye on)", SENSOR_TYPE_OK, -1},
      {"(think)", SENSOR_TYPE_OK, -1},
      {"(clang (ver (p \"Alpha\" 10) 7 8))", SENSOR_TYPE_CLANG_VER, -1},
      {"(error no_such_team)", SENSOR_TYPE_ERROR, -1},
      {"(warning no_subs_left)", SENSOR_TYPE_WARNING, -1},
  };
  for (const auto& row : rows) {
    EXPECT_TRUE(parse(row.text)) << row.text;
    EXPECT_EQ(record.type, row.type) << row.text;
    EXPECT_EQ(record.time, row.time) << row.text;
    EXPECT_EQ(record.think, row.text == "(think)"sv) << row.text;
  }
  EXPECT_EQ(errors.take(), "Parser: fullstate message received!\n");
}

TEST_F(ParserTest, RefusesWhatItDoesNotUnderstand) {
  for (const char* text : {"", "(", "hello", "(think", " (ok eye on)", "(see 99999999999)",
                           "(see 1 ", "(sense_body 1 (x))", "(hear 3", "(hear 3 ", "(init l ok)"})
    EXPECT_FALSE(parse(text)) << text;
  EXPECT_FALSE(parse("(see_global 5 ((b) 0 0 0 0\0))"sv)) << "a text ends at its NUL byte";

  Parser player("Alpha", CLIENT_FIELDPLAYER, 7, 8);
  errors.take();
  EXPECT_FALSE(player.parseServerString("(see_global 5 ((b) 0 0 0 0))", record));
  EXPECT_EQ(errors.take(), "Parser: received see message for coach\n");
}

TEST_F(ParserTest, ATypeChangeIsOursOnlyBehindAComma) {
  const struct {
    const char* text;
    int number, type, announced;
    bool ours;
  } rows[] = {{"(change_player_type 3 5)", 3, -1, 5, false},
              {"(change_player_type 3, 5)", 3, 5, 5, true},
              {"(change_player_type 4)", 4, -1, -1, false},
              {"(change_player_type 12, 5)", -1, 5, 5, true},
              {"(change_player_type x 7)", -1, -1, -1, false}};
  for (const auto& row : rows) {
    EXPECT_TRUE(parse(row.text));
    EXPECT_EQ(record.number, row.number) << row.text;
    EXPECT_EQ(record.heteroType, row.type) << row.text;
    EXPECT_EQ(record.announcedType, row.announced) << row.text;
    EXPECT_EQ(record.ourTeamChanged, row.ours) << row.text;
  }
}

TEST_F(ParserTest, PlayModesAreNamedForEachSide) {
  const struct {
    std::string name;
    play_mode us;
  } rows[] = {{"kick_off", PLAY_MODE_KICK_OFF_US},
              {"kick_in", PLAY_MODE_KICK_IN_US},
              {"free_kick", PLAY_MODE_FREE_KICK_US},
              {"corner_kick", PLAY_MODE_CORNER_KICK_US},
              {"goal_kick", PLAY_MODE_GOAL_KICK_US},
              {"offside", PLAY_MODE_OFFSIDE_US},
              {"goal", PLAY_MODE_GOAL_US},
              {"free_kick_fault", PLAY_MODE_FREEKICK_FAULT_US},
              {"goalie_catch_ball", PLAY_MODE_GOALIE_CATCH_US},
              {"penalty_kick", PLAY_MODE_PENALTY_KICK_US},
              {"foul_charge", PLAY_MODE_FOUL_CHARGE_US},
              {"foul_push", PLAY_MODE_FOUL_PUSH_US},
              {"foul_multiple_attack", PLAY_MODE_FOUL_MULTIPLE_ATTACK_US},
              {"foul_ballout", PLAY_MODE_FOUL_BALLOUT_US},
              {"back_pass", PLAY_MODE_BACKPASS_US},
              {"penalty_setup", PLAY_MODE_PENALTY_SETUP_US},
              {"penalty_ready", PLAY_MODE_PENALTY_READY_US},
              {"penalty_taken", PLAY_MODE_PENALTY_TAKEN_US},
              {"penalty_miss", PLAY_MODE_PENALTY_MISS_US},
              {"penalty_score", PLAY_MODE_PENALTY_SCORE_US},
              {"indirect_free_kick", PLAY_MODE_FREE_KICK_US},
              {"catch_fault", PLAY_MODE_FREEKICK_FAULT_US},
              {"illegal_defense", PLAY_MODE_FREEKICK_FAULT_US}};
  for (const auto& row : rows) {
    EXPECT_EQ(Parser::parsePlaymode(row.name + "_l_1)", SIDE_LEFT), row.us) << row.name;
    EXPECT_EQ(Parser::parsePlaymode(row.name + "_l", SIDE_RIGHT), row.us + 1) << row.name;
    EXPECT_EQ(Parser::parsePlaymode(row.name + "_r", SIDE_LEFT), row.us + 1) << row.name;
    EXPECT_EQ(Parser::parsePlaymode(row.name + "_r", SIDE_RIGHT), row.us) << row.name;
  }
  const struct {
    const char* name;
    play_mode left, right;
  } others[] = {{"before_kick_off", PLAY_MODE_BEFORE_KICK_OFF, PLAY_MODE_BEFORE_KICK_OFF},
                {"time_over", PLAY_MODE_TIME_OVER, PLAY_MODE_TIME_OVER},
                {"time_up", PLAY_MODE_TIME_OVER, PLAY_MODE_TIME_OVER},
                {"play_on", PLAY_MODE_PLAY_ON, PLAY_MODE_PLAY_ON},
                {"drop_ball", PLAY_MODE_DROP_BALL, PLAY_MODE_DROP_BALL},
                {"half_time", PLAY_MODE_HALF_TIME, PLAY_MODE_HALF_TIME},
                {"first_half_over", PLAY_MODE_HALF_TIME, PLAY_MODE_HALF_TIME},
                {"time_extended", PLAY_MODE_TIME_EXTENDED, PLAY_MODE_TIME_EXTENDED},
                {"pause", PLAY_MODE_PAUSE, PLAY_MODE_PAUSE},
                {"human_judge", PLAY_MODE_HUMAN_JUDGE, PLAY_MODE_HUMAN_JUDGE},
                {"foul_l", PLAY_MODE_FREE_KICK_THEM, PLAY_MODE_FREE_KICK_US},
                {"foul_r", PLAY_MODE_FREE_KICK_US, PLAY_MODE_FREE_KICK_THEM}};
  for (const auto& row : others) {
    EXPECT_EQ(Parser::parsePlaymode(row.name, SIDE_LEFT), row.left) << row.name;
    EXPECT_EQ(Parser::parsePlaymode(row.name, SIDE_RIGHT), row.right) << row.name;
  }
  EXPECT_EQ(errors.take(), "");
  EXPECT_EQ(Parser::parsePlaymode("yellow_card_l_5", SIDE_LEFT), PLAY_MODE_UNKNOWN);
  EXPECT_EQ(errors.take(), "Unknown Playmode: yellow_card_l_5\n");
}

TEST_F(ParserTest, AGlobalViewHoldsBallGoalsAndPlayers) {
  parser.setSide(SIDE_RIGHT);
  ASSERT_TRUE(
      parse("(see_global 5 ((g l) -52.5 0) ((G r) 52.5 0) ((b) 1 -2 0.5 0.25)"
            " ((p \"Alpha\" 1 goalie) -50 0 0 0 45 10) ((p \"Beta\" 7) 1 2 3 4 270 0 90 t)"
            " ((p \"Beta\" 12) 1 2 3 4 5 6 t))"));
  EXPECT_EQ(record.exactgoal[0].which, GOAL_LEFT);
  EXPECT_EQ(record.exactgoal[0].team, TEAM_THEM);
  EXPECT_EQ(record.exactgoal[1].team, TEAM_US);
  EXPECT_EQ(record.exactball.y_vel, 0.25);

  const ExactPlayer& keeper = record.exactplayer[0];
  EXPECT_EQ(keeper.team, TEAM_US);
  EXPECT_EQ(keeper.number, 1);
  EXPECT_EQ(keeper.goalie, GOALIE_TRUE);
  EXPECT_DOUBLE_EQ(keeper.body_dir, PI / 4);
  EXPECT_DOUBLE_EQ(keeper.face_dir, PI / 18);
  EXPECT_EQ(keeper.pointto_dir, NO_ANGLE);

  EXPECT_DOUBLE_EQ(record.exactplayer[1].body_dir, -PI / 2);
  EXPECT_DOUBLE_EQ(record.exactplayer[1].pointto_dir, PI / 2);
  EXPECT_TRUE(record.exactplayer[1].tackle);
  EXPECT_EQ(record.exactplayer[2].number, -1) << "there is no shirt 12";
  EXPECT_TRUE(record.exactplayer[2].tackle);
  EXPECT_EQ(record.exactplayer[2].pointto_dir, NO_ANGLE);
}

TEST_F(ParserTest, AViewEndsAtTheFirstObjectThatIsNone) {
  std::string crowd = "(see_global 1";
  for (int i = 0; i < 23; ++i) crowd += " ((p \"Beta\" 1) 0 0 0 0 0 0)";
  const struct {
    std::string text, error;
  } rows[] = {
      {crowd + ")", "Parser: to manny players!\n"},
      {"(see_global 1 ((g l) 0 0) ((g r) 0 0) ((g l) 0 0))", "Parser: to manny goals!\n"},
      {"(see_global 1 ((f c) 0 0))", ""},
      {"(see_global 1)", "Parser: malformed object: l=0 len=0\n')'\n"},
      {"(see_global 1 ((b)))", "Parser: malformed object: l=4 len=0\n'((b)))'\n"},
      {"(see_global 1 ((b) 0 nan 0 0))",
       "Parser: malformed object: l=5 len=15\n'((b) 0 nan 0 0))'\n"},
      {"(see_global 1 ((b) 1e999 0\n))", "Parser: malformed object: l=5 len=14\n'((b) 1e999 0'\n"},
  };
  for (const auto& row : rows) {
    EXPECT_FALSE(parse(row.text)) << row.text;
    EXPECT_EQ(errors.take(), row.error);
  }
  EXPECT_FALSE(parse("(see_global 1 ((b) 3 0 0 0) ((" + std::string(8000, 'p') + ") 0 0"));
  EXPECT_EQ(record.exactball.x, 3) << "what was read stays";
}

TEST_F(ParserTest, LandmarksAreToldByTheLongestName) {
  const struct {
    const char* name;
    flag_type flag;
  } rows[] = {{"f l t 30", FLAG_LEFT_TOP_30},   {"f l t", FLAG_TOP_LEFT},
              {"f r b", FLAG_BOTTOM_RIGHT},     {"f r 0", FLAG_RIGHT_0},
              {"f p r c", FLAG_P_RIGHT_CENTER}, {"f g l b", FLAG_GOAL_LEFT_BOTTOM},
              {"f c t", FLAG_TOP_CENTER},       {"f c", FLAG_CENTER},
              {"f t l", FLAG_UNKNOWN}};
  for (const auto& row : rows) {
    SensorFlag flag;
    Parser::parseFlag(row.name, flag);
    EXPECT_EQ(flag.which, row.flag) << row.name;
  }
  SensorLine line;
  Parser::parseLine("l r", line);
  EXPECT_EQ(line.which, LINE_RIGHT);
  Parser::parseLine("l", line);
  EXPECT_EQ(line.which, LINE_UNKNOWN);
  EXPECT_EQ(Parser::determineObject("B"), OT_NONE);
  EXPECT_EQ(Parser::determineObject("f c"), OT_FLAG);
}

TEST_F(ParserTest, TheRefereeTellsModesScoresAndPenaltySides) {
  EXPECT_TRUE(parse("(hear 120 referee goal_l_2)"));
  EXPECT_EQ(record.sender, SENDER_REFEREE);
  EXPECT_EQ(record.mode, PLAY_MODE_GOAL_US);
  EXPECT_EQ(record.score, 2);
  EXPECT_FALSE(parse("(hear 120 referee goal_l)")) << "a goal has a count";

  EXPECT_TRUE(parse("(hear 3000 referee penalty_onfield_r)"));
  EXPECT_EQ(record.penaltySide, SIDE_RIGHT);
  EXPECT_EQ(record.mode, PLAY_MODE_UNKNOWN);
  for (const std::string call : {"winner_r", "foul_l", "draw"}) {
    EXPECT_TRUE(parse("(hear 3000 referee penalty_" + call + ")"));
    EXPECT_EQ(record.mode, PLAY_MODE_UNKNOWN);
    EXPECT_EQ(record.penaltySide, SIDE_UNKNOWN);
  }
  EXPECT_EQ(errors.take(), "");
  EXPECT_TRUE(parse("(hear 51 referee hello_all)"));
  EXPECT_EQ(errors.take(), "Unknown Playmode: hello_all)\n");
}

TEST_F(ParserTest, AVoiceTellsItsDirectionAndFitsItsRoom) {
  EXPECT_TRUE(parse("(hear 80 -190 our 7 \"abc\")"));
  EXPECT_NEAR(record.sender_dir, 170 * PI / 180, 1e-12);

  const std::string flood(8000, 'a');
  EXPECT_TRUE(parse("(hear 1 (p \"" + flood + "\" 3) \"" + flood + "\")"));
  EXPECT_EQ(std::string_view(record.sender_name.data()).size(), 512U);
  EXPECT_EQ(std::string_view(record.message.data()).size(), 512U);
}

TEST_F(ParserTest, ACoachSpeaksFreelyOrInItsLanguage) {
  const std::string head = "(hear 138 online_coach_left ";
  EXPECT_TRUE(parse(head + "(freeform \"a b\"))"));
  EXPECT_EQ(record.coachMsgType, CMT_FREEFORM);
  for (const std::string text : {"(freeform \"a(b\"))", "(freeform \"ab", "(freeform \"ab\" )"}) {
    EXPECT_FALSE(parse(head + text));
    EXPECT_EQ(record.coachMsgType, CMT_NONE);
    EXPECT_EQ(errors.take(), "Parser: recvd unknown message from olcoach:\"" + text + "\"\n");
  }

  const std::string advice = " (6000 (true) (do our {3} (hold)))";
  EXPECT_TRUE(parse(head + "(advice" + advice + ")"));
  EXPECT_EQ(record.coachMsgType, CMT_ADVICE);
  EXPECT_EQ(record.message.data(), advice + ")");
  const std::pair<const char*, CoachMsgType> words[] = {
      {"info", CMT_INFO}, {"meta", CMT_META}, {"define", CMT_DEFINE}};
  for (const auto& [word, type] : words) {
    EXPECT_TRUE(parse("(hear 138 online_coach_right (" + std::string(word) + " x))"));
    EXPECT_EQ(record.sender, SENDER_ONLINECOACH);
    EXPECT_EQ(record.coachMsgType, type) << word;
    EXPECT_STREQ(record.message.data(), " x))");
  }
  EXPECT_TRUE(parse(head + "(info" + std::string(700, 'x')));
  EXPECT_EQ(record.message.data(), std::string(512, 'x'));
  EXPECT_TRUE(parse(head + "(unsupported_clang))"));
  EXPECT_EQ(record.coachMsgType, CMT_NONE);
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

TEST_F(PlayerParserTest, APlayerIsToldOfItsBody) {
  const std::string body =
      "(view_mode high narrow) (stamina 7990.5 0.9) (speed 0.4 -90) (head_angle 45) (kick 1)"
      " (dash 2) (turn 3) (say 4) (turn_neck 5) (catch 6) (move 7) (change_view 8)"
      " (arm (movable 9) (expires 10) (target 1.5 -2) (count 11))"
      " (focus (target r 7) (count 12)) (tackle (expires 13) (count 14)) (collision (ball) (x))";
  ASSERT_TRUE(parse("(sense_body 12 " + body + ")"));
  EXPECT_EQ(record.type, SENSOR_TYPE_SENSE_BODY);
  EXPECT_EQ(record.time, 12);
  EXPECT_EQ(record.my_view_width, VIEW_WIDTH_NARROW);
  EXPECT_EQ(record.my_view_quality, VIEW_QUALITY_HIGH);
  EXPECT_EQ((std::vector{record.stamina, record.effort, record.speed, record.arm_target.x,
                         record.arm_target.y}),
            (std::vector{7990.5, 0.9, 0.4, 1.5, -2.0}));
  EXPECT_DOUBLE_EQ(record.speed_angle, -PI / 2);
  EXPECT_DOUBLE_EQ(record.head_angle, PI / 4);
  EXPECT_EQ((std::vector{record.kick_count, record.dash_count, record.turn_count, record.say_count,
                         record.turn_neck_count, record.catch_count, record.move_count,
                         record.change_view_count, record.arm_movable, record.arm_expires,
                         record.point_to_count, record.attention_to_count, record.tackle_expires,
                         record.tackle_count}),
            (std::vector{1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12, 13, 14}));
  EXPECT_EQ(record.attentionTo, 7);
  EXPECT_TRUE(record.attentionToOurTeam);

  EXPECT_TRUE(parse("(sense_body 13 (focus (target none) (count 3)))"));
  EXPECT_EQ(record.attentionTo, 0);
  // The timing takes differences of counts, which must not overflow.
  for (const char* text : {"(kick -1)", "(say 2147483647)", "(focus (target r 12) (count 0))",
                           "(stamina 1)", "(kick x)", "(speed 1 1e999)", "(arm (movable 0))",
                           "kick", "(kick 1", "(focus (target x))", "()"})
    EXPECT_FALSE(parse("(sense_body 12 " + std::string(text) + ")")) << text;
  EXPECT_FALSE(parse("(sense_body 12 (kick 1)")) << "no end";
}

TEST_F(PlayerParserTest, APlayerSeesFromWhereItStands) {
  ASSERT_TRUE(
      parse("(see 12 ((f c) 10 -90) ((g r) 50 0) ((l b) 30 45) ((b) 3.5 180 0.2 -1)"
            " ((p \"Alpha\" 3 goalie) 5 10 0 1 90 -90 t) ((p \"Beta\") 40 20 90)"
            " ((p) 60 20) ((B) 1 2) ((p \"Beta\" 4) 20))"));
  EXPECT_EQ(record.type, SENSOR_TYPE_SEE);
  EXPECT_TRUE(record.flag[FLAG_CENTER].valid);
  EXPECT_DOUBLE_EQ(record.flag[FLAG_CENTER].dir, -PI / 2);
  EXPECT_EQ(record.goal[GOAL_RIGHT].team, TEAM_US);
  EXPECT_EQ(record.goal[GOAL_RIGHT].dist, 50);
  EXPECT_FALSE(record.goal[GOAL_LEFT].valid);
  EXPECT_EQ(record.line[LINE_BOTTOM].dist, 30);
  EXPECT_EQ(record.ball.dist, 3.5);
  EXPECT_EQ(record.ball.dist_change, 0.2);
  EXPECT_DOUBLE_EQ(record.ball.dir_change, -PI / 180);

  const SensorPlayer& mate = record.player[0];
  EXPECT_EQ(mate.team, TEAM_US);
  EXPECT_EQ(mate.number, 3);
  EXPECT_EQ(mate.goalie, GOALIE_TRUE);
  EXPECT_DOUBLE_EQ(mate.body_dir, PI / 2);
  EXPECT_DOUBLE_EQ(mate.face_dir, -PI / 2);
  EXPECT_EQ(mate.pointto_dir, NO_ANGLE);
  EXPECT_TRUE(mate.tackle);
  const SensorPlayer& opponent = record.player[1];
  EXPECT_EQ(opponent.team, TEAM_THEM);
  EXPECT_EQ(opponent.number, -1);
  EXPECT_EQ(opponent.body_dir, NO_ANGLE);
  EXPECT_DOUBLE_EQ(opponent.pointto_dir, PI / 2);
  EXPECT_FALSE(opponent.tackle);
  EXPECT_EQ(record.player[2].team, TEAM_UNKNOWN);
  EXPECT_FALSE(record.player[3].valid) << "seen too badly for a distance";

  std::string crowd;
  for (int i = 0; i < 22; ++i) crowd += "((p) 60 20)";
  for (const std::string& text :
       {crowd + ")", std::string("((b) 1 2)"), std::string("((b) 1 1e999))"),
        std::string("(b 1 2))"), std::string("((b 1 2)")})
    EXPECT_FALSE(parse("(see 12 " + text)) << text;
  errors.take();
  EXPECT_FALSE(parse("(see 12 " + crowd + ")"));
  EXPECT_FALSE(parse("(see 12 ((l t) 1 2)((l t) 1 2)((l t) 1 2)((l t) 1 2)((l t) 1 2))"));
  EXPECT_EQ(errors.take(), "Parser: to manny players!\nParser: to manny lines!\n");
  EXPECT_FALSE(ParserTest::parse("(see 12 ((b) 1 2))")) << "a coach is sent no such view";
}

}  // namespace
}  // namespace vok::test
