#include "Parser.h"

#include <iostream>

namespace vok {
namespace {

/// A referee's name and its mode: for a name of one side the US value, which belongs to `ours`,
/// with the THEM value behind it.
struct PlaymodeName {
  std::string_view name;
  play_mode mode;
  playing_side ours = SIDE_UNKNOWN;
};

// A name matches by its beginning, so the order matters: "goal_kick_l" stands before "goal_l". A
// foul is a free kick of the other side.
constexpr auto PLAYMODE_NAMES = std::to_array<PlaymodeName>({
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
    // Of newer servers.
    {"indirect_free_kick_l", PLAY_MODE_FREE_KICK_US, SIDE_LEFT},
    {"indirect_free_kick_r", PLAY_MODE_FREE_KICK_US, SIDE_RIGHT},
    {"catch_fault_l", PLAY_MODE_FREEKICK_FAULT_US, SIDE_LEFT},
    {"catch_fault_r", PLAY_MODE_FREEKICK_FAULT_US, SIDE_RIGHT},
    {"illegal_defense_l", PLAY_MODE_FREEKICK_FAULT_US, SIDE_LEFT},
    {"illegal_defense_r", PLAY_MODE_FREEKICK_FAULT_US, SIDE_RIGHT},
});

}  // namespace

Parser::Parser(const char* teamName, client_type ctype, int minVer, int maxVer)
    : team_(teamName),
      isCoach_(ctype == CLIENT_ONLINECOACH || ctype == CLIENT_TRAINCOACH),
      clangMinVer(minVer),
      clangMaxVer(maxVer) {}

bool Parser::parseServerString(std::string_view text, SensorData& record) {
  data_ = &record;
  data_->think = false;
  msg_ = Scanner(text.substr(0, text.find('\0')));

  if (plainHead("(player_type ", SENSOR_TYPE_PLAYER_TYPE)) return parsePlayerType();
  if (timedHead(" (see ", SENSOR_TYPE_SEE)) {
    if (!msg_.literal(')')) return parseSee();
    data_->type = SENSOR_TYPE_STRANGE;
    return true;
  }
  if (timedHead(" (see_global ", SENSOR_TYPE_EXACT)) {
    if (isCoach_) return parseExact();
    std::cerr << "Parser: received see message for coach\n";
    return false;
  }
  if (timedHead(" (fullstate ", SENSOR_TYPE_ERROR)) {
    std::cerr << "Parser: fullstate message received!\n";
    return true;
  }
  if (timedHead(" (hear ", SENSOR_TYPE_HEAR)) return parseHear();
  if (timedHead(" (sense_body ", SENSOR_TYPE_SENSE_BODY)) return parseSenseBody();
  if (timedHead(" (ok look ", SENSOR_TYPE_EXACT)) return parseExact();
  if (plainHead("(ok ", SENSOR_TYPE_OK)) return parseAnswer();
  if (plainHead("(change_player_type ", SENSOR_TYPE_PLAYER_CHANGED)) return parsePlayerChanged();
  if (plainHead("(clang", SENSOR_TYPE_CLANG_VER)) return parseClangVersions();
  if (plainHead("(error ", SENSOR_TYPE_ERROR)) return parseAnswer();
  if (plainHead("(think)", SENSOR_TYPE_OK)) {
    data_->think = true;
    return true;
  }
  return plainHead("(warning ", SENSOR_TYPE_WARNING) && parseAnswer();
}

/// A head with a server time behind it; blanks in it match any white space.
bool Parser::timedHead(std::string_view head, sensor_data_type type) {
  int time = 0;
  Scanner ahead = msg_;
  if (!ahead.pattern(head) || !ahead.integer(time)) return false;
  msg_ = ahead.skipBlanks();
  data_->type = type;
  data_->time = time;
  return true;
}

/// A head without a time, compared exactly.
bool Parser::plainHead(std::string_view head, sensor_data_type type) {
  if (!msg_.literal(head)) return false;
  data_->type = type;
  data_->time = -1;
  return true;
}

/// "3, 5": the new type stands behind a comma. Without one it is taken as unnamed, which is how
/// the other team's changes come.
bool Parser::parsePlayerChanged() {
  data_->number = -1;
  data_->heteroType = -1;
  data_->announcedType = -1;
  int number = -1;
  if (msg_.integer(number)) {
    const bool comma = msg_.literal(',');
    msg_.integer(data_->announcedType);
    if (comma) data_->heteroType = data_->announcedType;
  }
  data_->number = shirtNumber(number);
  data_->ourTeamChanged = data_->heteroType != -1;
  return true;
}

/// " (ver ([]) 7, 8))": nobody needs the versions of the players, which come in another form.
bool Parser::parseClangVersions() {
  data_->number = -1;
  data_->heteroType = -1;
  if (!msg_.pattern(" (ver ([]) ") || !msg_.integer(data_->number)) return true;
  if (msg_.literal(',')) msg_.integer(data_->heteroType);
  return true;
}

play_mode Parser::parsePlaymode(std::string_view name, playing_side side) {
  for (const PlaymodeName& row : PLAYMODE_NAMES) {
    if (!name.starts_with(row.name)) continue;
    if (row.ours == SIDE_UNKNOWN || row.ours == side) return row.mode;
    return static_cast<play_mode>(row.mode + 1);
  }
  std::cerr << "Unknown Playmode: " << firstLine(name) << "\n";
  return PLAY_MODE_UNKNOWN;
}

ObjectType Parser::determineObject(std::string_view name) {
  switch (name.empty() ? '\0' : name.front()) {
    case 'b':
      return OT_BALL;
    case 'g':
      return OT_GOAL;
    case 'p':
      return OT_PLAYER;
    case 'f':
      return OT_FLAG;
    case 'l':
      return OT_LINE;
    default:
      return OT_NONE;
  }
}

void Parser::copyText(std::string_view text, HeardText& into) {
  const std::size_t n = text.copy(into.data(), into.size() - 1);
  into[n] = '\0';
}

}  // namespace vok
