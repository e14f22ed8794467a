#include "playmodes.h"

#include <algorithm>
#include <array>
#include <cstddef>

namespace vok {
namespace {

/// A referee's name and its mode. A name that belongs to a side stands with the US value and with
/// the side that takes it for its own mode; for the other side it is the THEM value, one higher.
struct Name {
  std::string_view name;
  play_mode mode;
  playing_side ours = SIDE_UNKNOWN;
};

// In the order in which they are tried; a name matches a call that begins with it. Of several names
// of a mode the first is the one that a trainer sends. A plain foul is a free kick of the other
// side.
constexpr auto NAMES = std::to_array<Name>({
    {"before_kick_off", PLAY_MODE_BEFORE_KICK_OFF},
    {"time_over", PLAY_MODE_TIME_OVER},
    {"time_up", PLAY_MODE_TIME_OVER},
    {"play_on", PLAY_MODE_PLAY_ON},
    {"kick_off_l", PLAY_MODE_KICK_OFF_US, SIDE_LEFT},
    {"kick_off_r", PLAY_MODE_KICK_OFF_US, SIDE_RIGHT},
    {"kick_in_l", PLAY_MODE_KICK_IN_US, SIDE_LEFT},
    {"kick_in_r", PLAY_MODE_KICK_IN_US, SIDE_RIGHT},
    {"free_kick_l", PLAY_MODE_FREE_KICK_US, SIDE_LEFT},
    {"free_kick_r", PLAY_MODE_FREE_KICK_US, SIDE_RIGHT},
    {"foul_r", PLAY_MODE_FREE_KICK_US, SIDE_LEFT},
    {"foul_l", PLAY_MODE_FREE_KICK_US, SIDE_RIGHT},
    {"corner_kick_l", PLAY_MODE_CORNER_KICK_US, SIDE_LEFT},
    {"corner_kick_r", PLAY_MODE_CORNER_KICK_US, SIDE_RIGHT},
    {"goal_kick_l", PLAY_MODE_GOAL_KICK_US, SIDE_LEFT},
    {"goal_kick_r", PLAY_MODE_GOAL_KICK_US, SIDE_RIGHT},
    {"drop_ball", PLAY_MODE_DROP_BALL},
    {"offside_l", PLAY_MODE_OFFSIDE_US, SIDE_LEFT},
    {"offside_r", PLAY_MODE_OFFSIDE_US, SIDE_RIGHT},
    {"half_time", PLAY_MODE_HALF_TIME},
    {"first_half_over", PLAY_MODE_HALF_TIME},
    {"time_extended", PLAY_MODE_TIME_EXTENDED},
    {"pause", PLAY_MODE_PAUSE},
    {"human_judge", PLAY_MODE_HUMAN_JUDGE},
    {"goal_l", PLAY_MODE_GOAL_US, SIDE_LEFT},
    {"goal_r", PLAY_MODE_GOAL_US, SIDE_RIGHT},
    {"free_kick_fault_l", PLAY_MODE_FREEKICK_FAULT_US, SIDE_LEFT},
    {"free_kick_fault_r", PLAY_MODE_FREEKICK_FAULT_US, SIDE_RIGHT},
    {"goalie_catch_ball_l", PLAY_MODE_GOALIE_CATCH_US, SIDE_LEFT},
    {"goalie_catch_ball_r", PLAY_MODE_GOALIE_CATCH_US, SIDE_RIGHT},
    {"penalty_kick_l", PLAY_MODE_PENALTY_KICK_US, SIDE_LEFT},
    {"penalty_kick_r", PLAY_MODE_PENALTY_KICK_US, SIDE_RIGHT},
    {"foul_charge_l", PLAY_MODE_FOUL_CHARGE_US, SIDE_LEFT},
    {"foul_charge_r", PLAY_MODE_FOUL_CHARGE_US, SIDE_RIGHT},
    {"foul_push_l", PLAY_MODE_FOUL_PUSH_US, SIDE_LEFT},
    {"foul_push_r", PLAY_MODE_FOUL_PUSH_US, SIDE_RIGHT},
    {"foul_multiple_attack_l", PLAY_MODE_FOUL_MULTIPLE_ATTACK_US, SIDE_LEFT},
    {"foul_multiple_attack_r", PLAY_MODE_FOUL_MULTIPLE_ATTACK_US, SIDE_RIGHT},
    {"foul_ballout_l", PLAY_MODE_FOUL_BALLOUT_US, SIDE_LEFT},
    {"foul_ballout_r", PLAY_MODE_FOUL_BALLOUT_US, SIDE_RIGHT},
    {"back_pass_l", PLAY_MODE_BACKPASS_US, SIDE_LEFT},
    {"back_pass_r", PLAY_MODE_BACKPASS_US, SIDE_RIGHT},
    {"penalty_setup_l", PLAY_MODE_PENALTY_SETUP_US, SIDE_LEFT},
    {"penalty_setup_r", PLAY_MODE_PENALTY_SETUP_US, SIDE_RIGHT},
    {"penalty_ready_l", PLAY_MODE_PENALTY_READY_US, SIDE_LEFT},
    {"penalty_ready_r", PLAY_MODE_PENALTY_READY_US, SIDE_RIGHT},
    {"penalty_taken_l", PLAY_MODE_PENALTY_TAKEN_US, SIDE_LEFT},
    {"penalty_taken_r", PLAY_MODE_PENALTY_TAKEN_US, SIDE_RIGHT},
    {"penalty_miss_l", PLAY_MODE_PENALTY_MISS_US, SIDE_LEFT},
    {"penalty_miss_r", PLAY_MODE_PENALTY_MISS_US, SIDE_RIGHT},
    {"penalty_score_l", PLAY_MODE_PENALTY_SCORE_US, SIDE_LEFT},
    {"penalty_score_r", PLAY_MODE_PENALTY_SCORE_US, SIDE_RIGHT},
    // These come from newer servers.
    {"indirect_free_kick_l", PLAY_MODE_FREE_KICK_US, SIDE_LEFT},
    {"indirect_free_kick_r", PLAY_MODE_FREE_KICK_US, SIDE_RIGHT},
    {"catch_fault_l", PLAY_MODE_FREEKICK_FAULT_US, SIDE_LEFT},
    {"catch_fault_r", PLAY_MODE_FREEKICK_FAULT_US, SIDE_RIGHT},
    {"illegal_defense_l", PLAY_MODE_FREEKICK_FAULT_US, SIDE_LEFT},
    {"illegal_defense_r", PLAY_MODE_FREEKICK_FAULT_US, SIDE_RIGHT},
});

// What a mode means to a client; the comments of the functions say it in full.
constexpr unsigned STOPPED = 1;     // isStopped: the clock is known to stand
constexpr unsigned SET_PLAY = 2;    // isSetPlay: somebody is to take a kick
constexpr unsigned OWN_HALVES = 4;  // isInOwnHalves: both teams have to be in their own halves
constexpr unsigned PLACING = 8;     // allowsPlacing: players can place themselves
constexpr unsigned TRAINER = 16;    // isTrainerMode: a trainer can set the mode

struct Meaning {
  play_mode mode;
  team_number team;
  unsigned marks;
};

// A row for each mode, in the order of their values.
constexpr auto MEANINGS = std::to_array<Meaning>({
    {PLAY_MODE_BEFORE_KICK_OFF, TEAM_UNKNOWN, STOPPED | OWN_HALVES | PLACING | TRAINER},
    {PLAY_MODE_TIME_OVER, TEAM_UNKNOWN, STOPPED | TRAINER},
    {PLAY_MODE_HALF_TIME, TEAM_UNKNOWN, 0},
    {PLAY_MODE_TIME_EXTENDED, TEAM_UNKNOWN, 0},
    {PLAY_MODE_PAUSE, TEAM_UNKNOWN, STOPPED},
    {PLAY_MODE_PLAY_ON, TEAM_UNKNOWN, TRAINER},
    {PLAY_MODE_DROP_BALL, TEAM_UNKNOWN, 0},
    {PLAY_MODE_HUMAN_JUDGE, TEAM_UNKNOWN, 0},
    {PLAY_MODE_KICK_OFF_US, TEAM_US, SET_PLAY | OWN_HALVES | TRAINER},
    {PLAY_MODE_KICK_OFF_THEM, TEAM_THEM, SET_PLAY | OWN_HALVES | TRAINER},
    {PLAY_MODE_KICK_IN_US, TEAM_US, SET_PLAY | TRAINER},
    {PLAY_MODE_KICK_IN_THEM, TEAM_THEM, SET_PLAY | TRAINER},
    {PLAY_MODE_FREE_KICK_US, TEAM_US, SET_PLAY | TRAINER},
    {PLAY_MODE_FREE_KICK_THEM, TEAM_THEM, SET_PLAY | TRAINER},
    {PLAY_MODE_CORNER_KICK_US, TEAM_US, SET_PLAY | TRAINER},
    {PLAY_MODE_CORNER_KICK_THEM, TEAM_THEM, SET_PLAY | TRAINER},
    {PLAY_MODE_GOAL_KICK_US, TEAM_US, SET_PLAY | TRAINER},
    {PLAY_MODE_GOAL_KICK_THEM, TEAM_THEM, SET_PLAY | TRAINER},
    {PLAY_MODE_PENALTY_KICK_US, TEAM_US, STOPPED},
    {PLAY_MODE_PENALTY_KICK_THEM, TEAM_THEM, STOPPED},
    {PLAY_MODE_GOAL_US, TEAM_US, STOPPED | OWN_HALVES | PLACING | TRAINER},
    {PLAY_MODE_GOAL_THEM, TEAM_THEM, STOPPED | OWN_HALVES | PLACING | TRAINER},
    {PLAY_MODE_GOALIE_CATCH_US, TEAM_US, 0},
    {PLAY_MODE_GOALIE_CATCH_THEM, TEAM_THEM, 0},
    {PLAY_MODE_OFFSIDE_US, TEAM_US, STOPPED | TRAINER},
    {PLAY_MODE_OFFSIDE_THEM, TEAM_THEM, STOPPED | TRAINER},
    {PLAY_MODE_BACKPASS_US, TEAM_US, STOPPED},
    {PLAY_MODE_BACKPASS_THEM, TEAM_THEM, STOPPED},
    {PLAY_MODE_FREEKICK_FAULT_US, TEAM_US, STOPPED},
    {PLAY_MODE_FREEKICK_FAULT_THEM, TEAM_THEM, STOPPED},
    {PLAY_MODE_FOUL_CHARGE_US, TEAM_US, 0},
    {PLAY_MODE_FOUL_CHARGE_THEM, TEAM_THEM, 0},
    {PLAY_MODE_FOUL_PUSH_US, TEAM_US, 0},
    {PLAY_MODE_FOUL_PUSH_THEM, TEAM_THEM, 0},
    {PLAY_MODE_FOUL_MULTIPLE_ATTACK_US, TEAM_US, 0},
    {PLAY_MODE_FOUL_MULTIPLE_ATTACK_THEM, TEAM_THEM, 0},
    {PLAY_MODE_FOUL_BALLOUT_US, TEAM_US, 0},
    {PLAY_MODE_FOUL_BALLOUT_THEM, TEAM_THEM, 0},
    {PLAY_MODE_PENALTY_SETUP_US, TEAM_US, 0},
    {PLAY_MODE_PENALTY_SETUP_THEM, TEAM_THEM, 0},
    {PLAY_MODE_PENALTY_READY_US, TEAM_US, 0},
    {PLAY_MODE_PENALTY_READY_THEM, TEAM_THEM, 0},
    {PLAY_MODE_PENALTY_TAKEN_US, TEAM_US, 0},
    {PLAY_MODE_PENALTY_TAKEN_THEM, TEAM_THEM, 0},
    {PLAY_MODE_PENALTY_MISS_US, TEAM_US, 0},
    {PLAY_MODE_PENALTY_MISS_THEM, TEAM_THEM, 0},
    {PLAY_MODE_PENALTY_SCORE_US, TEAM_US, 0},
    {PLAY_MODE_PENALTY_SCORE_THEM, TEAM_THEM, 0},
});

constexpr bool isInOrder() {
  for (std::size_t i = 0; i < MEANINGS.size(); ++i) {
    const Meaning& row = MEANINGS[i];
    if (static_cast<std::size_t>(row.mode) != i) return false;
    if (row.team == TEAM_THEM && row.marks != MEANINGS[i - 1].marks) return false;
  }
  return true;
}
static_assert(isInOrder(), "a row for each mode, and the same meaning for either team's");

/// Nothing is known of a mode without a row.
Meaning meaningOf(play_mode mode) {
  const auto index = static_cast<std::size_t>(mode);
  return index < MEANINGS.size() ? MEANINGS[index] : Meaning{PLAY_MODE_UNKNOWN, TEAM_UNKNOWN, 0};
}

bool isMarked(play_mode mode, unsigned mark) {
  return (meaningOf(mode).marks & mark) != 0;
}

/// The mode of a row as a client of `side` sees it.
play_mode seenBy(playing_side side, const Name& row) {
  if (row.ours == SIDE_UNKNOWN || row.ours == side) return row.mode;
  return static_cast<play_mode>(row.mode + 1);
}

}  // namespace

play_mode playmodeByName(std::string_view name, playing_side side) {
  const auto* const row = std::find_if(NAMES.begin(), NAMES.end(),
                                       [name](const Name& r) { return name.starts_with(r.name); });
  return row == NAMES.end() ? PLAY_MODE_UNKNOWN : seenBy(side, *row);
}

std::string_view playmodeName(play_mode mode, playing_side side) {
  // A client that does not know its side yet names the modes as the right team does.
  const playing_side own = side == SIDE_LEFT ? SIDE_LEFT : SIDE_RIGHT;
  const auto* const row = std::find_if(
      NAMES.begin(), NAMES.end(), [mode, own](const Name& r) { return seenBy(own, r) == mode; });
  return row == NAMES.end() ? std::string_view() : row->name;
}

team_number playmodeTeam(play_mode mode) {
  return meaningOf(mode).team;
}

bool isStopped(play_mode mode) {
  return isMarked(mode, STOPPED);
}

bool isSetPlay(play_mode mode) {
  return isMarked(mode, SET_PLAY);
}

bool isInOwnHalves(play_mode mode) {
  return isMarked(mode, OWN_HALVES);
}

bool allowsPlacing(play_mode mode) {
  return isMarked(mode, PLACING);
}

bool isTrainerMode(play_mode mode) {
  return isMarked(mode, TRAINER);
}

}  // namespace vok
