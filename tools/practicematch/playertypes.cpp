#include "playertypes.h"

#include <array>
#include <cstdio>
#include <string_view>
#include <utility>

namespace vok::practicematch {

namespace {

// Ranges and factors of the trade-offs; the same numbers go out in player_param.
constexpr double DECAY_DELTA = 0.1;
constexpr double INERTIA_PER_DECAY = 25;
constexpr double DASH_RATE_DELTA_MIN = -0.0012;
constexpr double DASH_RATE_DELTA_MAX = 0.0008;
constexpr double STAMINA_INC_PER_DASH_RATE = -6000;
constexpr double KICKABLE_DELTA = 0.1;
constexpr double KICK_RAND_PER_KICKABLE = 1;
constexpr double EXTRA_STAMINA_DELTA = 50;
constexpr double EFFORT_PER_EXTRA_STAMINA = -0.004;

constexpr std::string_view SERVER_PARAMS =
    R"((audio_cut_dist 50)(auto_mode 1)(back_passes 1)(ball_accel_max 2.7)(ball_decay 0.94))"
    R"((ball_rand 0.05)(ball_size 0.085)(ball_speed_max 3)(ball_weight 0.2)(catch_ban_cycle 5))"
    R"((catch_probability 1)(catchable_area_l 1.2)(catchable_area_w 1)(ckick_margin 1))"
    R"((clang_advice_win 1)(clang_define_win 1)(clang_del_win 1)(clang_info_win 1))"
    R"((clang_mess_delay 50)(clang_mess_per_cycle 1)(clang_meta_win 1)(clang_rule_win 1))"
    R"((clang_win_size 300)(coach 0)(coach_port 6001)(coach_w_referee 0)(connect_wait 3000))"
    R"((control_radius 2)(dash_power_rate 0.006)(drop_ball_time 100)(effort_dec 0.005))"
    R"((effort_dec_thr 0.3)(effort_inc 0.01)(effort_inc_thr 0.6)(effort_init 1)(effort_min 0.6))"
    R"((forbid_kick_off_offside 1)(free_kick_faults 1)(freeform_send_period 20))"
    R"((freeform_wait_period 600)(fullstate_l 0)(fullstate_r 0)(game_log_compression 0))"
    R"((game_log_dated 1)(game_log_dir "./")(game_log_fixed 0))"
    R"((game_log_fixed_name "practicematch")(game_log_version 6)(game_logging 0))"
    R"((game_over_wait 50)(goal_width 14.02)(goalie_max_moves 2)(half_time 300)(hear_decay 1))"
    R"((hear_inc 1)(hear_max 1)(inertia_moment 5)(keepaway 0)(keepaway_length 20))"
    R"((keepaway_log_dated 1)(keepaway_log_dir "./")(keepaway_log_fixed 0))"
    R"((keepaway_log_fixed_name "practicematch")(keepaway_logging 0)(keepaway_start -1))"
    R"((keepaway_width 20)(kick_off_wait 100)(kick_power_rate 0.027)(kick_rand 0.1))"
    R"((kick_rand_factor_l 1)(kick_rand_factor_r 1)(kickable_margin 0.7))"
    R"((landmark_file "~/.landmark.xml")(log_date_format "%Y%m%d%H%M%S-")(log_times 0))"
    R"((max_goal_kicks 3)(maxmoment 180)(maxneckang 90)(maxneckmoment 180)(maxpower 100))"
    R"((minmoment -180)(minneckang -90)(minneckmoment -180)(minpower -100)(nr_extra_halfs 0))"
    R"((nr_normal_halfs 2)(offside_active_area_size 2.5)(offside_kick_margin 9.15))"
    R"((olcoach_port 6002)(old_coach_hear 0)(pen_allow_mult_kicks 1)(pen_before_setup_wait 10))"
    R"((pen_coach_moves_players 1)(pen_dist_x 42.5)(pen_max_extra_kicks 5))"
    R"((pen_max_goalie_dist_x 14)(pen_nr_kicks 5)(pen_random_winner 0)(pen_ready_wait 10))"
    R"((pen_setup_wait 70)(pen_taken_wait 150)(penalty_shoot_outs 0)(player_accel_max 1))"
    R"((player_decay 0.4)(player_rand 0.1)(player_size 0.3)(player_speed_max 1.05))"
    R"((player_weight 60)(point_to_ban 5)(point_to_duration 20)(port 6000)(prand_factor_l 1))"
    R"((prand_factor_r 1)(profile 0)(proper_goal_kicks 0)(quantize_step 0.1)(quantize_step_l 0.01))"
    R"((record_messages 0)(recover_dec 0.002)(recover_dec_thr 0.3)(recover_init 1)(recover_min 0.5))"
    R"((recv_step 10)(say_coach_cnt_max 128)(say_coach_msg_size 128)(say_msg_size 10)(send_comms 0))"
    R"((send_step 150)(send_vi_step 100)(sense_body_step 100)(simulator_step 100))"
    R"((slow_down_factor 1)(slowness_on_top_for_left_team 1)(slowness_on_top_for_right_team 1))"
    R"((stamina_inc_max 45)(stamina_max 8000)(start_goal_l 0)(start_goal_r 0)(stopped_ball_vel 0.01))"
    R"((synch_micro_sleep 1)(synch_mode 1)(synch_offset 60)(tackle_back_dist 0)(tackle_cycles 10))"
    R"((tackle_dist 2)(tackle_exponent 6)(tackle_power_rate 0.027)(tackle_width 1.25))"
    R"((team_actuator_noise 0)(team_l_start "")(team_r_start "")(text_log_compression 0))"
    R"((text_log_dated 1)(text_log_dir "./")(text_log_fixed 0)(text_log_fixed_name "practicematch"))"
    R"((text_logging 0)(use_offside 1)(verbose 0)(visible_angle 90)(visible_distance 3)(wind_ang 0))"
    R"((wind_dir 0)(wind_force 0)(wind_none 0)(wind_rand 0)(wind_random 0))";

std::string item(std::string_view key, double value) {
  std::string text = "(";
  text += key;
  text += ' ';
  appendNumber(text, value);
  return text + ')';
}

void replaceItem(std::string& text, std::string_view key, double value) {
  const std::string head = "(" + std::string(key) + " ";
  const std::size_t at = text.find(head);
  text.replace(at, text.find(')', at) + 1 - at, item(key, value));
}

}  // namespace

void appendNumber(std::string& text, double number) {
  std::array<char, 32> digits{};
  const int length = std::snprintf(digits.data(), digits.size(), "%g", number);
  text.append(digits.data(), static_cast<std::size_t>(length));
}

std::vector<HeteroType> drawTypes(int count, Dice& dice) {
  std::vector<HeteroType> types(static_cast<std::size_t>(count));
  for (std::size_t id = 1; id < types.size(); ++id) {
    HeteroType& type = types[id];

    const double decay = dice.between(-DECAY_DELTA, DECAY_DELTA);
    type.decay += decay;
    type.inertia += decay * INERTIA_PER_DECAY;

    const double dashRate = dice.between(DASH_RATE_DELTA_MIN, DASH_RATE_DELTA_MAX);
    type.dashPowerRate += dashRate;
    type.staminaIncMax += dashRate * STAMINA_INC_PER_DASH_RATE;

    const double kickable = dice.between(-KICKABLE_DELTA, KICKABLE_DELTA);
    type.kickableMargin += kickable;
    type.kickRand += kickable * KICK_RAND_PER_KICKABLE;

    const double extra = dice.between(0, EXTRA_STAMINA_DELTA);
    type.extraStamina += extra;
    type.effortMax += extra * EFFORT_PER_EXTRA_STAMINA;
    type.effortMin += extra * EFFORT_PER_EXTRA_STAMINA;
  }
  return types;
}

std::string playerTypeText(int id, const HeteroType& type) {
  const std::array<std::pair<std::string_view, double>, 11> items = {
      {{"player_speed_max", type.speedMax},
       {"stamina_inc_max", type.staminaIncMax},
       {"player_decay", type.decay},
       {"inertia_moment", type.inertia},
       {"dash_power_rate", type.dashPowerRate},
       {"player_size", type.size},
       {"kickable_margin", type.kickableMargin},
       {"kick_rand", type.kickRand},
       {"extra_stamina", type.extraStamina},
       {"effort_max", type.effortMax},
       {"effort_min", type.effortMin}}};
  std::string text = "(player_type (id " + std::to_string(id) + ")";
  for (const auto& [key, value] : items) text += item(key, value);
  return text + ')';
}

std::string playerParamText(int types, int ptMax, std::uint64_t seed) {
  const std::array<std::pair<std::string_view, double>, 18> ranges = {
      {{"dash_power_rate_delta_max", 0},
       {"dash_power_rate_delta_min", 0},
       {"effort_max_delta_factor", EFFORT_PER_EXTRA_STAMINA},
       {"effort_min_delta_factor", EFFORT_PER_EXTRA_STAMINA},
       {"extra_stamina_delta_max", EXTRA_STAMINA_DELTA},
       {"extra_stamina_delta_min", 0},
       {"inertia_moment_delta_factor", INERTIA_PER_DECAY},
       {"kick_rand_delta_factor", KICK_RAND_PER_KICKABLE},
       {"kickable_margin_delta_max", KICKABLE_DELTA},
       {"kickable_margin_delta_min", -KICKABLE_DELTA},
       {"new_dash_power_rate_delta_max", DASH_RATE_DELTA_MAX},
       {"new_dash_power_rate_delta_min", DASH_RATE_DELTA_MIN},
       {"new_stamina_inc_max_delta_factor", STAMINA_INC_PER_DASH_RATE},
       {"player_decay_delta_max", DECAY_DELTA},
       {"player_decay_delta_min", -DECAY_DELTA},
       {"player_size_delta_factor", -100},
       {"player_speed_max_delta_max", 0},
       {"player_speed_max_delta_min", 0}}};
  std::string text = "(player_param ";
  for (const auto& [key, value] : ranges) text += item(key, value);
  return text + "(player_types " + std::to_string(types) + ")(pt_max " + std::to_string(ptMax) +
         ")(random_seed " + std::to_string(seed % 0x7fffffff) +
         ")(stamina_inc_max_delta_factor 0)(subs_max 3))";
}

std::string serverParamText(int halfTimeCycles, bool synch, int port) {
  std::string text = "(server_param " + std::string(SERVER_PARAMS) + ")";
  replaceItem(text, "half_time", halfTimeCycles > 10 ? halfTimeCycles / 10 : 1);
  replaceItem(text, "synch_mode", synch ? 1 : 0);
  replaceItem(text, "olcoach_port", port);
  return text;
}

}  // namespace vok::practicematch
