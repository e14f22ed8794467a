// The dispatch: the head of a datagram decides its type, and a reader of that type takes the rest.
//
// A reader walks over the text with a Scanner, as a scanf format would, and copies what it keeps
// into the record. `msg_` is the text behind the head; it moves on only where one reading follows
// another (the objects of a global view, the items of a parameter message). Heads are tried in a
// fixed order, since "(ok look " begins as "(ok " does; those with a time match any white space,
// the others are compared exactly. The readers are in parser_exact.cpp (global view),
// parser_hear.cpp (referee, coaches, players), parser_params.cpp (parameters, player types) and
// parser_senses.cpp (what a player sees and senses).
#include "Parser.h"

#include <iostream>

#include "playmodes.h"
#include "printable.h"
#include "scanner.h"

namespace vok {

Parser::Parser(const char* teamName, client_type ctype, int minVer, int maxVer)
    : team_(teamName),
      isCoach_(ctype == CLIENT_ONLINECOACH || ctype == CLIENT_TRAINCOACH),
      clangMinVer(minVer),
      clangMaxVer(maxVer) {}

bool Parser::parseServerString(std::string_view text, SensorData& record) {
  data_ = &record;
  data_->think = false;
  msg_ = text.substr(0, text.find('\0'));

  if (plainHead("(player_type ", SENSOR_TYPE_PLAYER_TYPE)) return parsePlayerType();
  if (timedHead(" (see ", SENSOR_TYPE_SEE)) {
    if (!msg_.starts_with(')')) return parseSee();
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
  Scanner at(msg_);
  if (!at.pattern(head) || !at.integer(time)) return false;
  msg_ = at.skipBlanks().rest();
  data_->type = type;
  data_->time = time;
  return true;
}

/// A head without a time, compared exactly.
bool Parser::plainHead(std::string_view head, sensor_data_type type) {
  if (!msg_.starts_with(head)) return false;
  msg_.remove_prefix(head.size());
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
  Scanner at(msg_);
  if (at.integer(number)) {
    const bool comma = at.literal(',');
    at.integer(data_->announcedType);
    if (comma) data_->heteroType = data_->announcedType;
  }
  data_->number = shirtNumber(number);
  data_->ourTeamChanged = data_->heteroType != -1;
  return true;
}

/// " (ver ([]) 7, 8))". The versions of the players come in another form and are not read.
bool Parser::parseClangVersions() {
  data_->number = -1;
  data_->heteroType = -1;
  Scanner at(msg_);
  if (!at.pattern(" (ver ([]) ") || !at.integer(data_->number)) return true;
  if (at.literal(',')) at.integer(data_->heteroType);
  return true;
}

play_mode Parser::parsePlaymode(std::string_view name, playing_side side) {
  const play_mode mode = playmodeByName(name, side);
  if (mode == PLAY_MODE_UNKNOWN)
    std::cerr << "Unknown Playmode: " << printable(firstLine(name)) << "\n";
  return mode;
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
