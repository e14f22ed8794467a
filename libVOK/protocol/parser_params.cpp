// The parameter messages: the tables that say where each item goes, and the reading by these
// tables.
//
// A message has more than 160 items, and each could match any row, as if every format were tried in
// turn. An index by key finds the row at once, with the same result: only rows of text values can
// take an item with another key, so these are tried when the key fails.
#include <algorithm>
#include <array>
#include <iostream>
#include <iterator>

#include "Parser.h"
#include "constants.h"
#include "printable.h"
#include "scanner.h"

namespace vok {

// One row for each key, closed by an empty row. The index sorts the rows, so a new one may stand
// anywhere before the empty row. A value is an int (%d), a double (%lf), a bool (%hd, a number that
// is not 0) or a text. Rows without a target skip items that the library has no use for. To use
// such an item, give its row a target and remove the * from its format: a second row of the same
// key would not be read.
const std::vector<Token> Parser::serverParamTokens = {
    {" (catch_ban_cycle %d)%n", &CATCH_BAN_CYCLES, DT_INT},
    {" (clang_advice_win %d)%n", &CLANG_ADVICE_WIN, DT_INT},
    {" (clang_define_win %d)%n", &CLANG_DEFINE_WIN, DT_INT},
    {" (clang_del_win %d)%n", &CLANG_DEL_WIN, DT_INT},
    {" (clang_info_win %d)%n", &CLANG_INFO_WIN, DT_INT},
    {" (clang_mess_delay %d)%n", &CLANG_MESS_DELAY, DT_INT},
    {" (clang_mess_per_cycle %d)%n", &CLANG_MESS_PER_CYCLE, DT_INT},
    {" (clang_meta_win %d)%n", &CLANG_META_WIN, DT_INT},
    {" (clang_rule_win %d)%n", &CLANG_RULE_WIN, DT_INT},
    {" (clang_win_size %d)%n", &CLANG_WIN_SIZE, DT_INT},
    {" (drop_ball_time %d)%n", &DROP_BALL_TIME, DT_INT},
    {" (goalie_max_moves %d)%n", &GOALIE_MAX_MOVES, DT_INT},
    {" (half_time %d)%n", &HALF_TIME, DT_INT},
    {" (hear_decay %lf)%n", &HEAR_DECAY, DT_DOUBLE},
    {" (hear_inc %lf)%n", &HEAR_INC, DT_DOUBLE},
    {" (hear_max %lf)%n", &HEAR_MAX, DT_DOUBLE},
    {" (pen_before_setup_wait %d)%n", &PENALTY_BEFORE_SETUP_WAIT, DT_INT},
    {" (pen_max_extra_kicks %d)%n", &PENALTY_MAX_EXTRA_KICKS, DT_INT},
    {" (pen_nr_kicks %d)%n", &PENALTY_NR_KICKS, DT_INT},
    {" (pen_ready_wait %d)%n", &PENALTY_READY_WAIT, DT_INT},
    {" (pen_setup_wait %d)%n", &PENALTY_SETUP_WAIT, DT_INT},
    {" (pen_taken_wait %d)%n", &PENALTY_TAKEN_WAIT, DT_INT},
    {" (point_to_ban %d)%n", &POINTTO_BAN_CYCLES, DT_INT},
    {" (point_to_duration %d)%n", &POINTTO_DURATION, DT_INT},
    {" (recv_step %d)%n", &RECV_STEP, DT_INT},
    {" (say_coach_cnt_max %d)%n", &SAY_COACH_CNT_MAX, DT_INT},
    {" (say_coach_msg_size %d)%n", &SAY_COACH_MSG_SIZE, DT_INT},
    {" (say_msg_size %d)%n", &SAY_MSG_SIZE, DT_INT},
    {" (send_step %d)%n", &SEND_STEP, DT_INT},
    {" (send_vi_step %d)%n", &SEND_VI_STEP, DT_INT},
    {" (sense_body_step %d)%n", &SENSE_BODY_STEP, DT_INT},
    {" (simulator_step %d)%n", &SIMULATOR_STEP, DT_INT},
    {" (slow_down_factor %d)%n", &SLOW_DOWN_FACTOR, DT_INT},
    {" (tackle_cycles %d)%n", &TACKLE_CYCLES, DT_INT},
    {" (forbid_kick_off_offside %hd)%n", &FORBID_KICK_OFF_OFFSIDE, DT_BOOL},
    {" (pen_allow_mult_kicks %hd)%n", &PENALTY_ALLOW_MULT_KICKS, DT_BOOL},
    {" (pen_coach_moves_players %hd)%n", &PENALTY_COACH_MOVES_PLAYERS, DT_BOOL},
    {" (pen_random_winner %hd)%n", &PENALTY_RANDOM_WINNER, DT_BOOL},
    {" (synch_mode %hd)%n", &SYNCH_MODE, DT_BOOL},
    {" (use_offside %hd)%n", &USE_OFFSIDE, DT_BOOL},
    {" (audio_cut_dist %lf)%n", &AUDIO_CUT_DIST, DT_DOUBLE},
    {" (ball_accel_max %lf)%n", &BACCEL_MAX, DT_DOUBLE},
    {" (ball_decay %lf)%n", &BALL_DECAY, DT_DOUBLE},
    {" (ball_rand %lf)%n", &BALL_RAND, DT_DOUBLE},
    {" (ball_size %lf)%n", &BALL_SIZE, DT_DOUBLE},
    {" (ball_speed_max %lf)%n", &BALL_SPEED_MAX, DT_DOUBLE},
    {" (ball_weight %lf)%n", &BALL_WEIGHT, DT_DOUBLE},
    {" (catch_probability %lf)%n", &CATCH_PROBABILITY, DT_DOUBLE},
    {" (catchable_area_l %lf)%n", &CATCHABLE_AREA_L, DT_DOUBLE},
    {" (catchable_area_w %lf)%n", &CATCHABLE_AREA_W, DT_DOUBLE},
    {" (ckick_margin %lf)%n", &CKICK_MARGIN, DT_DOUBLE},
    {" (dash_power_rate %lf)%n", &DASH_POWER_RATE, DT_DOUBLE},
    {" (effort_dec %lf)%n", &EFFORT_DEC, DT_DOUBLE},
    {" (effort_dec_thr %lf)%n", &EFFORT_DEC_THR, DT_DOUBLE},
    {" (effort_inc %lf)%n", &EFFORT_INC, DT_DOUBLE},
    {" (effort_inc_thr %lf)%n", &EFFORT_INC_THR, DT_DOUBLE},
    {" (effort_min %lf)%n", &EFFORT_MIN, DT_DOUBLE},
    {" (goal_width %lf)%n", &GOAL_WIDTH, DT_DOUBLE},
    {" (inertia_moment %lf)%n", &INERTIA_MOMENT, DT_DOUBLE},
    {" (kick_power_rate %lf)%n", &KICK_POWER_RATE, DT_DOUBLE},
    {" (kick_rand %lf)%n", &KICK_RAND, DT_DOUBLE},
    {" (kickable_margin %lf)%n", &KICKABLE_MARGIN, DT_DOUBLE},
    {" (maxmoment %lf)%n", &MAXMOMENT, DT_DOUBLE},
    {" (maxneckang %lf)%n", &MAXNECKANG, DT_DOUBLE},
    {" (maxneckmoment %lf)%n", &MAXNECKMOMENT, DT_DOUBLE},
    {" (maxpower %lf)%n", &MAXPOWER, DT_DOUBLE},
    {" (minmoment %lf)%n", &MINMOMENT, DT_DOUBLE},
    {" (minneckang %lf)%n", &MINNECKANG, DT_DOUBLE},
    {" (minneckmoment %lf)%n", &MINNECKMOMENT, DT_DOUBLE},
    {" (minpower %lf)%n", &MINPOWER, DT_DOUBLE},
    {" (offside_kick_margin %lf)%n", &OFFSIDE_KICK_MARGIN, DT_DOUBLE},
    {" (pen_dist_x %lf)%n", &PENALTY_DIST_X, DT_DOUBLE},
    {" (pen_max_goalie_dist_x %lf)%n", &PENALTY_MAX_GOALIE_DIST_X, DT_DOUBLE},
    {" (player_accel_max %lf)%n", &PLAYER_ACCEL_MAX, DT_DOUBLE},
    {" (player_decay %lf)%n", &PLAYER_DECAY, DT_DOUBLE},
    {" (player_rand %lf)%n", &PLAYER_RAND, DT_DOUBLE},
    {" (player_size %lf)%n", &PLAYER_SIZE, DT_DOUBLE},
    {" (player_speed_max %lf)%n", &PLAYER_SPEED_MAX, DT_DOUBLE},
    {" (player_weight %lf)%n", &PLAYER_WEIGHT, DT_DOUBLE},
    {" (recover_dec %lf)%n", &RECOVER_DEC, DT_DOUBLE},
    {" (recover_dec_thr %lf)%n", &RECOVER_DEC_THR, DT_DOUBLE},
    {" (recover_init %lf)%n", &RECOVER_INIT, DT_DOUBLE},
    {" (recover_min %lf)%n", &RECOVER_MIN, DT_DOUBLE},
    {" (stamina_inc_max %lf)%n", &STAMINA_INC_MAX, DT_DOUBLE},
    {" (stamina_max %lf)%n", &STAMINA_MAX, DT_DOUBLE},
    {" (tackle_back_dist %lf)%n", &TACKLE_BACK_DIST, DT_DOUBLE},
    {" (tackle_dist %lf)%n", &TACKLE_DIST, DT_DOUBLE},
    {" (tackle_exponent %d)%n", &TACKLE_EXP, DT_INT},
    {" (tackle_power_rate %lf)%n", &TACKLE_POWER_RATE, DT_DOUBLE},
    {" (tackle_width %lf)%n", &TACKLE_WIDTH, DT_DOUBLE},
    {" (visible_angle %lf)%n", &VISIBLE_ANGLE, DT_DOUBLE},
    {" (visible_distance %lf)%n", &VISIBLE_DISTANCE, DT_DOUBLE},
    {" (wind_ang %lf)%n", &WIND_ANGLE, DT_DOUBLE},
    {" (wind_dir %lf)%n", &WIND_DIR, DT_DOUBLE},
    {" (wind_force %lf)%n", &WIND_FORCE, DT_DOUBLE},
    {" (wind_rand %lf)%n", &WIND_RAND, DT_DOUBLE},
    {" (coach_port %*d)%n", nullptr, DT_NONE},
    {" (connect_wait %*d)%n", nullptr, DT_NONE},
    {" (freeform_send_period %*d)%n", nullptr, DT_NONE},
    {" (freeform_wait_period %*d)%n", nullptr, DT_NONE},
    {" (game_log_compression %*d)%n", nullptr, DT_NONE},
    {" (game_log_version %*d)%n", nullptr, DT_NONE},
    {" (game_over_wait %*d)%n", nullptr, DT_NONE},
    {" (keepaway_start %*d)%n", nullptr, DT_NONE},
    {" (kick_off_wait %*d)%n", nullptr, DT_NONE},
    {" (max_goal_kicks %*d)%n", nullptr, DT_NONE},
    {" (nr_extra_halfs %*d)%n", nullptr, DT_NONE},
    {" (nr_normal_halfs %*d)%n", nullptr, DT_NONE},
    {" (olcoach_port %*d)%n", nullptr, DT_NONE},
    {" (port %*d)%n", nullptr, DT_NONE},
    {" (start_goal_l %*d)%n", nullptr, DT_NONE},
    {" (start_goal_r %*d)%n", nullptr, DT_NONE},
    {" (synch_micro_sleep %*lf)%n", nullptr, DT_NONE},
    {" (synch_offset %*lf)%n", nullptr, DT_NONE},
    {" (text_log_compression %*d)%n", nullptr, DT_NONE},
    {" (game_log_dir%*[^)])%n", nullptr, DT_NONE},
    {" (module_dir%*[^)])%n", nullptr, DT_NONE},
    {" (game_log_fixed_name%*[^)])%n", nullptr, DT_NONE},
    {" (keepaway_log_dir%*[^)])%n", nullptr, DT_NONE},
    {" (keepaway_log_fixed_name%*[^)])%n", nullptr, DT_NONE},
    {" (landmark_file%*[^)])%n", nullptr, DT_NONE},
    {" (log_date_format%*[^)])%n", nullptr, DT_NONE},
    {" (team_l_start%*[^)])%n", nullptr, DT_NONE},
    {" (team_r_start%*[^)])%n", nullptr, DT_NONE},
    {" (text_log_dir%*[^)])%n", nullptr, DT_NONE},
    {" (text_log_fixed_name%*[^)])%n", nullptr, DT_NONE},
    {" (coach %*d)%n", nullptr, DT_NONE},
    {" (coach_w_referee %*d)%n", nullptr, DT_NONE},
    {" (old_coach_hear %*d)%n", nullptr, DT_NONE},
    {" (wind_none %*lf)%n", nullptr, DT_NONE},
    {" (wind_random %*lf)%n", nullptr, DT_NONE},
    {" (auto_mode %*d)%n", nullptr, DT_NONE},
    {" (back_passes %*d)%n", nullptr, DT_NONE},
    {" (free_kick_faults %*d)%n", nullptr, DT_NONE},
    {" (fullstate_l %*d)%n", nullptr, DT_NONE},
    {" (fullstate_r %*d)%n", nullptr, DT_NONE},
    {" (game_log_dated %*d)%n", nullptr, DT_NONE},
    {" (game_log_fixed %*d)%n", nullptr, DT_NONE},
    {" (game_logging %*d)%n", nullptr, DT_NONE},
    {" (keepaway %*d)%n", nullptr, DT_NONE},
    {" (keepaway_log_dated %*d)%n", nullptr, DT_NONE},
    {" (keepaway_log_fixed %*d)%n", nullptr, DT_NONE},
    {" (keepaway_logging %*d)%n", nullptr, DT_NONE},
    {" (log_times %*d)%n", nullptr, DT_NONE},
    {" (penalty_shoot_outs %*d)%n", nullptr, DT_NONE},
    {" (profile %*d)%n", nullptr, DT_NONE},
    {" (proper_goal_kicks %*d)%n", nullptr, DT_NONE},
    {" (record_messages %*d)%n", nullptr, DT_NONE},
    {" (send_comms %*d)%n", nullptr, DT_NONE},
    {" (team_actuator_noise %*lf)%n", nullptr, DT_NONE},
    {" (text_log_dated %*d)%n", nullptr, DT_NONE},
    {" (text_log_fixed %*d)%n", nullptr, DT_NONE},
    {" (text_logging %*d)%n", nullptr, DT_NONE},
    {" (verbose %*d)%n", nullptr, DT_NONE},
    {" (control_radius %*lf)%n", nullptr, DT_NONE},
    {" (effort_init %*d)%n", nullptr, DT_NONE},
    {" (keepaway_length %*d)%n", nullptr, DT_NONE},
    {" (keepaway_width %*d)%n", nullptr, DT_NONE},
    {" (kick_rand_factor_l %*lf)%n", nullptr, DT_NONE},
    {" (kick_rand_factor_r %*lf)%n", nullptr, DT_NONE},
    {" (offside_active_area_size %*lf)%n", nullptr, DT_NONE},
    {" (prand_factor_l %*lf)%n", nullptr, DT_NONE},
    {" (prand_factor_r %*lf)%n", nullptr, DT_NONE},
    {" (quantize_step %*lf)%n", nullptr, DT_NONE},
    {" (quantize_step_l %*lf)%n", nullptr, DT_NONE},
    {" (slowness_on_top_for_left_team %*lf)%n", nullptr, DT_NONE},
    {" (slowness_on_top_for_right_team %*lf)%n", nullptr, DT_NONE},
    {" (stopped_ball_vel %*lf)%n", nullptr, DT_NONE},
    {},
};

const std::vector<Token> Parser::playerParamTokens = {
    {" (player_types %d)%n", &playerParams.player_types, DT_INT},
    {" (pt_max %lf)%n", &playerParams.pt_max, DT_DOUBLE},
    {" (random_seed %*d)%n", nullptr, DT_NONE},
    {" (subs_max %d)%n", &playerParams.subs_max, DT_INT},
    {" (dash_power_rate_delta_max %lf)%n", &playerParams.dash_power_rate_delta_max, DT_DOUBLE},
    {" (dash_power_rate_delta_min %lf)%n", &playerParams.dash_power_rate_delta_min, DT_DOUBLE},
    {" (effort_max_delta_factor %lf)%n", &playerParams.effort_max_delta_factor, DT_DOUBLE},
    {" (effort_min_delta_factor %lf)%n", &playerParams.effort_min_delta_factor, DT_DOUBLE},
    {" (extra_stamina_delta_max %lf)%n", &playerParams.extra_stamina_delta_max, DT_DOUBLE},
    {" (extra_stamina_delta_min %lf)%n", &playerParams.extra_stamina_delta_min, DT_DOUBLE},
    {" (inertia_moment_delta_factor %lf)%n", &playerParams.inertia_moment_delta_factor, DT_DOUBLE},
    {" (kick_rand_delta_factor %lf)%n", &playerParams.kick_rand_delta_factor, DT_DOUBLE},
    {" (kickable_margin_delta_max %lf)%n", &playerParams.kickable_margin_delta_max, DT_DOUBLE},
    {" (kickable_margin_delta_min %lf)%n", &playerParams.kickable_margin_delta_min, DT_DOUBLE},
    {" (new_dash_power_rate_delta_max %lf)%n", &playerParams.new_dash_power_rate_delta_max,
     DT_DOUBLE},
    {" (new_dash_power_rate_delta_min %lf)%n", &playerParams.new_dash_power_rate_delta_min,
     DT_DOUBLE},
    {" (new_stamina_inc_max_delta_factor %lf)%n", &playerParams.new_stamina_inc_max_delta_factor,
     DT_DOUBLE},
    {" (player_decay_delta_max %lf)%n", &playerParams.player_decay_delta_max, DT_DOUBLE},
    {" (player_decay_delta_min %lf)%n", &playerParams.player_decay_delta_min, DT_DOUBLE},
    {" (player_size_delta_factor %lf)%n", &playerParams.player_size_delta_factor, DT_DOUBLE},
    {" (player_speed_max_delta_max %lf)%n", &playerParams.player_speed_max_delta_max, DT_DOUBLE},
    {" (player_speed_max_delta_min %lf)%n", &playerParams.player_speed_max_delta_min, DT_DOUBLE},
    {" (stamina_inc_max_delta_factor %lf)%n", &playerParams.stamina_inc_max_delta_factor,
     DT_DOUBLE},
    {},
};

namespace {

/// What a format has read, in the member that belongs to its conversion.
struct Value {
  double real = 0;
  int integer = 0;
  short flag = 0;
  std::string_view text;
};

bool convert(char conversion, Scanner& at, Value& value) {
  if (conversion == 'd') return at.integer(value.integer);
  if (conversion == 'h') return at.integer(value.flag);
  if (conversion == 'l') return at.real(value.real);
  if (conversion == 's') return at.word(value.text);
  return conversion == '[' && at.until(')', value.text);
}

/// What was read of an item, and how much of the text.
struct Reading {
  Value value;
  bool converted = false;
  std::size_t consumed = 0;  ///< 0 when the end of the item was not reached
};

}  // namespace

/// A token's format, " (key %d)%n", taken apart. The value of a text follows its key at once.
struct Parser::Format {
  std::string_view key;
  bool spaced = false;   ///< any white space may stand before the value
  bool skipped = false;  ///< the value is not stored
  char conversion = 0;   ///< d, h for hd, l for lf, s, and [ for the text up to the parenthesis

  explicit Format(std::string_view text) {
    Scanner at(text);
    at.pattern(" (");
    at.run(isKeyLetter, key);
    spaced = at.literal(' ');
    at.literal('%');
    skipped = at.literal('*');
    at.character(conversion);
  }

  Reading scan(Scanner at) const {
    Reading reading;
    const std::size_t before = at.rest().size();
    if (!at.skipBlanks().literal('(') || !at.literal(key)) return reading;
    if (spaced) at.skipBlanks();
    reading.converted = convert(conversion, at, reading.value);
    if (reading.converted && at.literal(')')) reading.consumed = before - at.rest().size();
    return reading;
  }

  static bool isKeyLetter(char c) { return isLetter(c) || c == '_'; }
};

/// The rows of a table by key. A row of a text value is tried for other keys, too: its format does
/// not say where the key ends.
struct Parser::TokenIndex {
  struct Row {
    Format format;
    const Token* token;
  };

  std::vector<Row> byKey;
  std::vector<Row> textRows;

  explicit TokenIndex(const std::vector<Token>& rows) {
    for (const Token& token : rows) {
      if (token.fmt != nullptr) byKey.push_back({Format(token.fmt), &token});
    }
    std::sort(byKey.begin(), byKey.end(),
              [](const Row& a, const Row& b) { return a.format.key < b.format.key; });
    std::copy_if(byKey.begin(), byKey.end(), std::back_inserter(textRows),
                 [](const Row& row) { return !row.format.spaced; });
  }

  /// The row of the item at the position, or the end.
  std::vector<Row>::const_iterator find(Scanner at) const {
    std::string_view key;
    if (at.pattern(" (")) at.run(Format::isKeyLetter, key);
    const auto row = std::lower_bound(
        byKey.begin(), byKey.end(), key,
        [](const Row& r, std::string_view wanted) { return r.format.key < wanted; });
    return row != byKey.end() && row->format.key == key ? row : byKey.end();
  }
};

int Parser::readToken(const Token& token) {
  return token.fmt == nullptr ? 1 : readToken(Format(token.fmt), token);
}

int Parser::readToken(const Format& format, const Token& token) {
  if (token.dt < DT_NONE || token.dt > DT_BOOL) {
    std::cerr << "Parser::readToken: unknown data type " << token.dt << "\n";
    return -1;
  }
  const Reading reading = format.scan(Scanner(msg_));
  const bool stored = reading.converted && !format.skipped;
  if (token.dt == DT_NONE ? reading.consumed == 0 : !stored) return 1;

  if (token.dt == DT_INT) *static_cast<int*>(token.ptr) = reading.value.integer;
  if (token.dt == DT_DOUBLE) *static_cast<double*>(token.ptr) = reading.value.real;
  if (token.dt == DT_BOOL) *static_cast<bool*>(token.ptr) = reading.value.flag != 0;
  if (token.dt == DT_STRING) copyText(reading.value.text, *static_cast<HeardText*>(token.ptr));
  msg_.remove_prefix(reading.consumed);
  return 0;
}

/// Reads as many items as the table has rows, each by the first row that takes it.
bool Parser::readItems(std::string_view text, std::string_view head, const TokenIndex& index) {
  if (!text.starts_with(head)) return false;
  msg_ = text.substr(head.size(), text.find('\0') - head.size());
  const auto read = [this](const TokenIndex::Row& row) {
    return readToken(row.format, *row.token) == 0;
  };
  auto row = index.byKey.begin();
  for (std::size_t items = 0; items < index.byKey.size(); ++items) {
    const std::size_t before = msg_.size();
    // Servers send their items sorted by key, so that the next row mostly fits.
    if (row == index.byKey.end() || !read(*row)) {
      row = index.find(Scanner(msg_));
      const bool byKey = row != index.byKey.end() && read(*row);
      if (!byKey && std::none_of(index.textRows.begin(), index.textRows.end(), read)) return true;
    }
    if (msg_.size() == before) return true;
    if (row != index.byKey.end()) ++row;
  }
  return true;
}

bool Parser::parseServerParam(std::string_view text) {
  static const TokenIndex INDEX(serverParamTokens);
  return readItems(text, "(server_param ", INDEX);
}

bool Parser::parsePlayerParam(std::string_view text) {
  static const TokenIndex INDEX(playerParamTokens);
  return readItems(text, "(player_param ", INDEX);
}

bool Parser::parsePlayerType() {
  if (data_ == nullptr) return false;
  PlayerType& type = data_->playerType;
  const auto tokens = std::to_array<Token>({
      {" (id %d)%n", &type.player_type, DT_INT},
      {" (player_speed_max %lf)%n", &type.player_speed_max, DT_DOUBLE},
      {" (stamina_inc_max %lf)%n", &type.stamina_inc_max, DT_DOUBLE},
      {" (player_decay %lf)%n", &type.player_decay, DT_DOUBLE},
      {" (inertia_moment %lf)%n", &type.inertia_moment, DT_DOUBLE},
      {" (dash_power_rate %lf)%n", &type.dash_power_rate, DT_DOUBLE},
      {" (player_size %lf)%n", &type.player_size, DT_DOUBLE},
      {" (kickable_margin %lf)%n", &type.kickable_margin, DT_DOUBLE},
      {" (kick_rand %lf)%n", &type.kick_rand, DT_DOUBLE},
      {" (extra_stamina %lf)%n", &type.extra_stamina, DT_DOUBLE},
      {" (effort_max %lf)%n", &type.effort_max, DT_DOUBLE},
      {" (effort_min %lf)%n", &type.effort_min, DT_DOUBLE},
  });
  for (std::size_t i = 0; i < tokens.size();) {
    const int result = readToken(tokens[i]);
    if (result < 0) return false;
    if (result == 0) {
      ++i;
      continue;
    }
    std::string_view unknown;
    Scanner ahead(msg_);
    if (!ahead.pattern(" (") || !ahead.until(')', unknown) || !ahead.pattern(") ")) return false;
    std::cerr << "Parser::parsePlayerType: skipping unknown token at " << i << " ("
              << printable(firstLine(unknown)) << ")\n";
    msg_ = ahead.rest();
  }
  return true;
}

}  // namespace vok
