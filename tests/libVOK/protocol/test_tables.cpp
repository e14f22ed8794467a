// The tables of facts against those in tests/data, which were written down independently.
#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "Parser.h"
#include "constants.h"
#include "landmarks.h"
#include "playmodes.h"
#include "support/param_keeper.h"
#include "support/server.h"

namespace vok::test {
namespace {

Lines rowsOf(const std::string& table) {
  return lines(runCommand("grep -v '^#' " VOK_SOURCE_DIR "/tests/data/" + table).second);
}

/// The constants in the order of parameters.txt.
std::vector<double> constants() {
  const auto real = [](auto... values) { return std::vector{static_cast<double>(values)...}; };
  const PlayerParams& p = playerParams;
  return real(
      CATCH_BAN_CYCLES, CLANG_ADVICE_WIN, CLANG_DEFINE_WIN, CLANG_DEL_WIN, CLANG_INFO_WIN,
      CLANG_MESS_DELAY, CLANG_MESS_PER_CYCLE, CLANG_META_WIN, CLANG_RULE_WIN, CLANG_WIN_SIZE,
      DROP_BALL_TIME, GOALIE_MAX_MOVES, HALF_TIME, HEAR_DECAY, HEAR_INC, HEAR_MAX,
      PENALTY_BEFORE_SETUP_WAIT, PENALTY_MAX_EXTRA_KICKS, PENALTY_NR_KICKS, PENALTY_READY_WAIT,
      PENALTY_SETUP_WAIT, PENALTY_TAKEN_WAIT, POINTTO_BAN_CYCLES, POINTTO_DURATION, RECV_STEP,
      SAY_COACH_CNT_MAX, SAY_COACH_MSG_SIZE, SAY_MSG_SIZE, SEND_STEP, SEND_VI_STEP, SENSE_BODY_STEP,
      SIMULATOR_STEP, SLOW_DOWN_FACTOR, TACKLE_CYCLES, FORBID_KICK_OFF_OFFSIDE,
      PENALTY_ALLOW_MULT_KICKS, PENALTY_COACH_MOVES_PLAYERS, PENALTY_RANDOM_WINNER, SYNCH_MODE,
      USE_OFFSIDE, AUDIO_CUT_DIST, BACCEL_MAX, BALL_DECAY, BALL_RAND, BALL_SIZE, BALL_SPEED_MAX,
      BALL_WEIGHT, CATCH_PROBABILITY, CATCHABLE_AREA_L, CATCHABLE_AREA_W, CKICK_MARGIN,
      DASH_POWER_RATE, EFFORT_DEC, EFFORT_DEC_THR, EFFORT_INC, EFFORT_INC_THR, EFFORT_MIN,
      GOAL_WIDTH, INERTIA_MOMENT, KICK_POWER_RATE, KICK_RAND, KICKABLE_MARGIN, MAXMOMENT,
      MAXNECKANG, MAXNECKMOMENT, MAXPOWER, MINMOMENT, MINNECKANG, MINNECKMOMENT, MINPOWER,
      OFFSIDE_KICK_MARGIN, PENALTY_DIST_X, PENALTY_MAX_GOALIE_DIST_X, PLAYER_ACCEL_MAX,
      PLAYER_DECAY, PLAYER_RAND, PLAYER_SIZE, PLAYER_SPEED_MAX, PLAYER_WEIGHT, RECOVER_DEC,
      RECOVER_DEC_THR, RECOVER_INIT, RECOVER_MIN, STAMINA_INC_MAX, STAMINA_MAX, TACKLE_BACK_DIST,
      TACKLE_DIST, TACKLE_EXP, TACKLE_POWER_RATE, TACKLE_WIDTH, VISIBLE_ANGLE, VISIBLE_DISTANCE,
      WIND_ANGLE, WIND_DIR, WIND_FORCE, WIND_RAND, p.player_types, p.pt_max, p.subs_max,
      p.dash_power_rate_delta_max, p.dash_power_rate_delta_min, p.effort_max_delta_factor,
      p.effort_min_delta_factor, p.extra_stamina_delta_max, p.extra_stamina_delta_min,
      p.inertia_moment_delta_factor, p.kick_rand_delta_factor, p.kickable_margin_delta_max,
      p.kickable_margin_delta_min, p.new_dash_power_rate_delta_max, p.new_dash_power_rate_delta_min,
      p.new_stamina_inc_max_delta_factor, p.player_decay_delta_max, p.player_decay_delta_min,
      p.player_size_delta_factor, p.player_speed_max_delta_max, p.player_speed_max_delta_min,
      p.stamina_inc_max_delta_factor);
}

TEST(Tables, EveryParameterSetsItsConstantAndNoOther) {
  Parser parser("Alpha", CLIENT_ONLINECOACH, 7, 8);
  std::string skipped = "(server_param ";
  std::size_t next = 0;
  for (const std::string& row : rowsOf("parameters.txt")) {
    const std::size_t key = row.find(' ') + 1;
    const std::string item = "(" + row.substr(key) + ")";
    const bool isSkipped = row.starts_with("skipped");
    if (isSkipped) skipped += item;
    std::vector<double> expected(constants().size());
    if (!isSkipped) expected.at(next++) = std::stod(row.substr(row.rfind(' ')));
    ParamKeeper::store(std::vector<double>(ParamKeeper::values().size()));
    const std::string text = "(" + row.substr(0, key) + item + ")";
    EXPECT_NE(parser.parseServerParam(text) || parser.parsePlayerParam(text), isSkipped) << text;
    ASSERT_EQ(constants(), expected) << text;
  }
  EXPECT_EQ(next, constants().size());
  EXPECT_TRUE(parser.parseServerParam(skipped + "(say_msg_size 3))"));
  EXPECT_EQ(SAY_MSG_SIZE, 3);
}

TEST(Tables, EveryRefereesNameHasItsModeAndMeaning) {
  for (const std::string& row : rowsOf("playmodes.txt")) {
    const std::string name = row.substr(0, row.find(' '));
    const play_mode left = playmodeByName(name + "_1)", SIDE_LEFT);
    const play_mode right = playmodeByName(name, SIDE_RIGHT);
    std::string got = name + " " + std::to_string(left) + " " + std::to_string(right);
    if (playmodeName(left, SIDE_LEFT) == name && playmodeName(right, SIDE_RIGHT) == name)
      got += " first";
    if (isStopped(left)) got += " stopped";
    if (isSetPlay(left)) got += " set-play";
    if (isInOwnHalves(left)) got += " own-halves";
    if (allowsPlacing(left)) got += " placing";
    if (isTrainerMode(left)) got += " trainer";
    EXPECT_EQ(got, row);
    EXPECT_EQ(playmodeTeam(left), left == right ? TEAM_UNKNOWN : left % 2) << name;
  }
  EXPECT_EQ(playmodeByName("goal", SIDE_LEFT), PLAY_MODE_UNKNOWN);
  EXPECT_TRUE(playmodeName(PLAY_MODE_UNKNOWN, SIDE_LEFT).empty() && !isStopped(PLAY_MODE_UNKNOWN));
}

TEST(Tables, EveryLandmarkHasItsNameAndPlace) {
  std::ostringstream got;
  for (const auto& [name, which, x, y] : goalLandmarks())
    got << "goal " << goalByName(name) << ' ' << goal_x[std::size_t(which)] << ' '
        << goal_y[std::size_t(which)] << ' ' << name << '\n';
  for (const auto& [name, which, x, y] : flagLandmarks())
    got << "flag " << flagByName(name) << ' ' << flag_x[std::size_t(which)] << ' '
        << flag_y[std::size_t(which)] << ' ' << name << '\n';
  for (const char* name : {"l t", "l l", "l r", "l b"})
    got << "line " << lineByName(name) << " 0 0 " << name << '\n';
  EXPECT_EQ(lines(got.str()), rowsOf("landmarks.txt"));
  EXPECT_TRUE(flagByName("f t l") == FLAG_UNKNOWN && lineByName("l") == LINE_UNKNOWN);
}

}  // namespace
}  // namespace vok::test
