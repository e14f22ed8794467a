#include <gtest/gtest.h>

#include <cstddef>
#include <string>
#include <tuple>
#include <utility>

#include "Parser.h"
#include "constants.h"
#include "support/server.h"

namespace vok::test {
namespace {

class ParamsTest : public testing::Test {
 protected:
  Parser parser{"Alpha", CLIENT_ONLINECOACH, 7, 8};
  StderrCapture errors;
};

TEST_F(ParamsTest, ItemsAreTakenInAnyOrder) {
  const int step = SIMULATOR_STEP;
  EXPECT_TRUE(
      parser.parseServerParam("(server_param (wind_rand 0.5) (synch_mode 1)(port 6010)\n"
                              "(game_log_directory \"./\")(half_time  60)(catch_ban_cycle 9))"));
  EXPECT_EQ(std::tuple(WIND_RAND, SYNCH_MODE, HALF_TIME, CATCH_BAN_CYCLES),
            std::tuple(0.5, true, 60, 9));
  EXPECT_EQ(SIMULATOR_STEP, step) << "not named";
  EXPECT_FALSE(parser.parseServerParam("(player_param (half_time 1))"));
  EXPECT_FALSE(parser.parsePlayerParam("(server_param (pt_max 1))"));
  EXPECT_EQ(HALF_TIME, 60);
}

TEST_F(ParamsTest, KeysSetTheConstantsTheyAreMeantFor) {
  EXPECT_TRUE(parser.parseServerParam(
      "(server_param (pen_setup_wait 1)(pen_nr_kicks 2)(pen_max_goalie_dist_x 3.5)(point_to_ban 5)"
      "(pen_allow_mult_kicks 1)(ball_accel_max 6.5)(tackle_exponent 7)(wind_ang 8.5)"
      "(maxneckmoment 9.5)(maxneckang 10.5)(say_coach_cnt_max 11)(say_msg_size 12)"
      "(stamina_inc_max 13.5)(recover_dec_thr 14.5)(catchable_area_w 15.5)(send_vi_step 16)"
      "(kick_rand 17.5)(kickable_margin 18.5)(player_speed_max 19.5)(offside_kick_margin 20.5))"));
  EXPECT_TRUE(PENALTY_ALLOW_MULT_KICKS);
  EXPECT_EQ(std::tuple(PENALTY_SETUP_WAIT, PENALTY_NR_KICKS, POINTTO_BAN_CYCLES, TACKLE_EXP,
                       SAY_COACH_CNT_MAX, SAY_MSG_SIZE, SEND_VI_STEP),
            std::tuple(1, 2, 5, 7, 11, 12, 16));
  EXPECT_EQ(std::tuple(PENALTY_MAX_GOALIE_DIST_X, BACCEL_MAX, WIND_ANGLE, MAXNECKMOMENT, MAXNECKANG,
                       STAMINA_INC_MAX, RECOVER_DEC_THR, CATCHABLE_AREA_W, KICK_RAND,
                       KICKABLE_MARGIN, PLAYER_SPEED_MAX, OFFSIDE_KICK_MARGIN),
            std::tuple(3.5, 6.5, 8.5, 9.5, 10.5, 13.5, 14.5, 15.5, 17.5, 18.5, 19.5, 20.5));
}

TEST_F(ParamsTest, TheFirstItemThatNoRowTakesEndsTheReading) {
  HALF_TIME = DROP_BALL_TIME = 1;
  for (const std::string item :
       {"(unknown 1)", "(synch_mode)", "(hear_max nan)", "(half_time 3000000000)", "( half_time 5)",
        "(module_dir)", "(log_times 0 1)"}) {
    EXPECT_TRUE(parser.parseServerParam("(server_param " + item + "(drop_ball_time 7))"));
    EXPECT_EQ(DROP_BALL_TIME, 1) << item;
    EXPECT_EQ(HALF_TIME, 1) << item;
  }
  EXPECT_TRUE(parser.parseServerParam("(server_param (half_time 300 s)(drop_ball_time 7))"));
  EXPECT_EQ(HALF_TIME, 300) << "the number is stored all the same";
  EXPECT_EQ(DROP_BALL_TIME, 1);

  std::string tooMany = "(player_param ";
  for (int i = 1; i <= 24; ++i) tooMany += "(subs_max " + std::to_string(i) + ")";
  EXPECT_TRUE(parser.parsePlayerParam(tooMany));
  EXPECT_EQ(playerParams.subs_max, 23) << "one item a row";
  EXPECT_EQ(errors.take(), "");
}

TEST_F(ParamsTest, APlayerTypeIsReadOverUnknownItems) {
  const std::string known =
      "(player_type (id 3)(player_speed_max 1.05)(stamina_inc_max 45)(player_decay 0.4)"
      "(inertia_moment 5)(dash_power_rate 0.006)(new one)(player_size 0.3)(kickable_margin 0.7)"
      "(kick_rand 0.1)(extra_stamina 50)(effort_max 1)";
  SensorData record;
  EXPECT_TRUE(parser.parseServerString(known + "(effort_min 0.6))", record));
  const PlayerType& type = record.playerType;
  EXPECT_EQ(std::tuple(record.type, type.player_type, type.dash_power_rate, type.effort_min),
            std::tuple(SENSOR_TYPE_PLAYER_TYPE, 3, 0.006, 0.6));
  EXPECT_EQ(errors.take(), "Parser::parsePlayerType: skipping unknown token at 6 (new one)\n");

  EXPECT_FALSE(parser.parseServerString(known + ")", record)) << "an item is missing";
  EXPECT_FALSE(parser.parseServerString(known + "()(effort_min 0.6))", record));
  EXPECT_FALSE(parser.parseServerString("(player_type ", record));
}

TEST_F(ParamsTest, CountsAreUsableAsSizes) {
  playerParams.player_types = -1;
  playerParams.subs_max = 2000000000;
  EXPECT_EQ(std::pair(numPlayerTypes(), numSubsMax()), std::pair(0, 1000));
}

TEST(Constants, TheFieldIsMarkedBeforeAnythingRuns) {
  EXPECT_EQ(std::tuple(HALF_TIME_IN_CYCLES, goal_x[GOAL_LEFT], goal_x[GOAL_RIGHT]),
            std::tuple(3000, -52.5, 52.5));
  const std::tuple<flag_type, double, double> rows[] = {
      {FLAG_TOP_LEFT, -52.5, -34},   {FLAG_P_RIGHT_BOTTOM, 36, 20.16},
      {FLAG_TOP_0, 0, -39},          {FLAG_GOAL_LEFT_TOP, -52.5, -7.01},
      {FLAG_TOP_LEFT_50, -50, -39},  {FLAG_BOTTOM_RIGHT_50, 50, 39},
      {FLAG_RIGHT_TOP_10, 57.5, -10}};
  for (const auto& [flag, x, y] : rows) {
    EXPECT_DOUBLE_EQ(flag_x[static_cast<std::size_t>(flag)], x) << flag;
    EXPECT_DOUBLE_EQ(flag_y[static_cast<std::size_t>(flag)], y) << flag;
  }
}

}  // namespace
}  // namespace vok::test
