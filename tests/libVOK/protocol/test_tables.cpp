// The tables of facts against those in tests/data, which were written down independently.
#include <gtest/gtest.h>

#include <array>
#include <fstream>
#include <set>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "Parser.h"
#include "constants.h"
#include "landmarks.h"
#include "playmodes.h"
#include "support/param_keeper.h"

namespace vok::test {
namespace {

std::vector<std::istringstream> rowsOf(const std::string& table) {
  std::ifstream file(VOK_SOURCE_DIR "/tests/data/" + table);
  std::vector<std::istringstream> rows;
  for (std::string line; std::getline(file, line);) {
    if (!line.starts_with('#')) rows.emplace_back(line);
  }
  return rows;
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
  for (std::istringstream& row : rowsOf("parameters.txt")) {
    std::string head, key, value;
    row >> head >> key >> value;
    const std::string item = "(" + key + " " + value + ")";
    if (head == "skipped") {
      skipped += item;
      continue;
    }
    ParamKeeper::store(std::vector<double>(ParamKeeper::values().size()));
    std::vector<double> expected(constants().size());
    expected.at(next++) = std::stod(value);
    const std::string text = "(" + head + " " + item + ")";
    EXPECT_TRUE(parser.parseServerParam(text) || parser.parsePlayerParam(text)) << text;
    ASSERT_EQ(constants(), expected) << text;
  }
  EXPECT_EQ(next, constants().size());
  EXPECT_TRUE(parser.parseServerParam(skipped + "(say_msg_size 3))"));
  EXPECT_TRUE(parser.parsePlayerParam("(player_param (random_seed 7)(subs_max 3))"));
  EXPECT_EQ(std::pair(SAY_MSG_SIZE, playerParams.subs_max), std::pair(3, 3));
  for (const auto* table : {&Parser::serverParamTokens, &Parser::playerParamTokens})
    EXPECT_EQ(table->back().fmt, nullptr) << "an empty row ends a table";
}

TEST(Tables, EveryRefereesNameHasItsModeAndMeaning) {
  const std::pair<const char*, bool (*)(play_mode)> marks[] = {{" stopped", isStopped},
                                                               {" set-play", isSetPlay},
                                                               {" own-halves", isInOwnHalves},
                                                               {" placing", allowsPlacing},
                                                               {" trainer", isTrainerMode}};
  std::set<std::pair<play_mode, playing_side>> named;
  for (std::istringstream& row : rowsOf("playmodes.txt")) {
    std::string name, meant;
    std::array<int, 2> modes{};
    row >> name >> modes[0] >> modes[1];
    std::getline(row, meant);
    for (const playing_side side : {SIDE_LEFT, SIDE_RIGHT}) {
      const auto mode = static_cast<play_mode>(modes.at(static_cast<std::size_t>(side)));
      EXPECT_EQ(playmodeByName(name + "_1)", side), mode) << name;
      EXPECT_EQ(playmodeName(mode, side) == name, named.emplace(mode, side).second) << name;
      EXPECT_EQ(playmodeTeam(mode), modes[0] == modes[1] ? TEAM_UNKNOWN : mode % 2) << name;
      std::string meaning;
      for (const auto& [mark, has] : marks) meaning += has(mode) ? mark : "";
      EXPECT_EQ(meaning, meant) << name;
    }
  }
  EXPECT_EQ(named.size(), 2U * 48);
  EXPECT_EQ(playmodeByName("goal", SIDE_LEFT), PLAY_MODE_UNKNOWN);
  EXPECT_EQ(playmodeName(PLAY_MODE_UNKNOWN, SIDE_LEFT), "");
  EXPECT_FALSE(isStopped(PLAY_MODE_UNKNOWN));
}

TEST(Tables, EveryLandmarkHasItsNameAndPlace) {
  std::size_t flags = 0;
  for (std::istringstream& row : rowsOf("landmarks.txt")) {
    std::string kind, name;
    std::size_t number = 0;
    std::pair<double, double> place;
    row >> kind >> number >> place.first >> place.second;
    std::getline(row >> std::ws, name);
    if (kind == "line") {
      EXPECT_EQ(lineByName(name), number);
    } else if (kind == "goal") {
      EXPECT_EQ(goalByName(name), number);
      EXPECT_EQ(std::pair(goal_x.at(number), goal_y.at(number)), place);
    } else {
      EXPECT_EQ(flagByName(name), number);
      EXPECT_EQ(std::pair(flag_x.at(number), flag_y.at(number)), place) << name;
      ++flags;
    }
  }
  EXPECT_EQ(flags, NUM_FLAGS);
  EXPECT_EQ(std::tuple(flagByName("f t l"), lineByName("l"), goalByName("g")),
            std::tuple(FLAG_UNKNOWN, LINE_UNKNOWN, GOAL_UNKNOWN));
}

}  // namespace
}  // namespace vok::test
