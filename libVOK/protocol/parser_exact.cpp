// The global view, and the names of the objects.
#include <array>
#include <iostream>
#include <numbers>

#include "Parser.h"

namespace vok {

/// One object of the list, " ( ( name ) numbers ) ".
struct Parser::GlobalObject {
  std::string_view name;
  std::string_view numbers;
  std::size_t nameSize = 0;  ///< characters up to the end of the name's parentheses; 0 without one
  std::size_t size = 0;      ///< characters up to the end of the object; 0 when it has no end
  bool last = false;         ///< the list ends behind it

  explicit GlobalObject(Scanner at) {
    const std::size_t before = at.rest().size();
    if (!at.skipBlanks().literal('(') || !at.skipBlanks().literal('(')) return;
    if (!at.skipBlanks().until(')', name) || !at.literal(')')) return;
    nameSize = before - at.skipBlanks().rest().size();
    if (!at.until(')', numbers) || !at.literal(')')) return;
    size = before - at.skipBlanks().rest().size();
    last = at.literal(')');
  }
};

namespace {

constexpr std::size_t MAX_NAME = 512;

/// Position, velocity, body and neck angle in degrees; then the arm's, and the tackle flag.
struct ObjectNumbers {
  std::array<double, 6> value{0, 0, 0, 0, NO_ANGLE, NO_ANGLE};
  double pointto = NO_ANGLE;
  bool tackle = false;
};

/// Reads as many as there are; false when one of them is not finite.
bool readNumbers(Scanner at, ObjectNumbers& numbers) {
  std::size_t read = 0;
  while (read < numbers.value.size() && at.real(numbers.value[read])) ++read;
  if (read < numbers.value.size()) return !at.atUnfitReal();

  if (!at.real(numbers.pointto) && at.atUnfitReal()) return false;
  at.skipBlanks();
  char flag = '\0';
  numbers.tackle = at.character(flag) && flag == 't';
  return true;
}

double radians(double degrees) {
  return degrees > NO_ANGLE ? Angle::mod2pi(degrees * std::numbers::pi / 180) : NO_ANGLE;
}

void setMotion(const ObjectNumbers& numbers, ExactObject& object) {
  object.valid = true;
  object.x = numbers.value[0];
  object.y = numbers.value[1];
  object.x_vel = numbers.value[2];
  object.y_vel = numbers.value[3];
}

bool isTeamLetter(char c) {
  return isLetter(c) || isDigit(c) || c == '-' || c == '_';
}

struct FlagName {
  std::string_view name;
  flag_type flag;
};

// A name matches by its beginning: longer names before their beginnings.
constexpr auto FLAG_NAMES = std::to_array<FlagName>({
    {"f t l 50", FLAG_TOP_LEFT_50},
    {"f t l 40", FLAG_TOP_LEFT_40},
    {"f t l 30", FLAG_TOP_LEFT_30},
    {"f t l 20", FLAG_TOP_LEFT_20},
    {"f t l 10", FLAG_TOP_LEFT_10},
    {"f t 0", FLAG_TOP_0},
    {"f t r 10", FLAG_TOP_RIGHT_10},
    {"f t r 20", FLAG_TOP_RIGHT_20},
    {"f t r 30", FLAG_TOP_RIGHT_30},
    {"f t r 40", FLAG_TOP_RIGHT_40},
    {"f t r 50", FLAG_TOP_RIGHT_50},
    {"f b l 50", FLAG_BOTTOM_LEFT_50},
    {"f b l 40", FLAG_BOTTOM_LEFT_40},
    {"f b l 30", FLAG_BOTTOM_LEFT_30},
    {"f b l 20", FLAG_BOTTOM_LEFT_20},
    {"f b l 10", FLAG_BOTTOM_LEFT_10},
    {"f b 0", FLAG_BOTTOM_0},
    {"f b r 10", FLAG_BOTTOM_RIGHT_10},
    {"f b r 20", FLAG_BOTTOM_RIGHT_20},
    {"f b r 30", FLAG_BOTTOM_RIGHT_30},
    {"f b r 40", FLAG_BOTTOM_RIGHT_40},
    {"f b r 50", FLAG_BOTTOM_RIGHT_50},
    {"f l t 30", FLAG_LEFT_TOP_30},
    {"f l t 20", FLAG_LEFT_TOP_20},
    {"f l t 10", FLAG_LEFT_TOP_10},
    {"f l 0", FLAG_LEFT_0},
    {"f l b 10", FLAG_LEFT_BOTTOM_10},
    {"f l b 20", FLAG_LEFT_BOTTOM_20},
    {"f l b 30", FLAG_LEFT_BOTTOM_30},
    {"f r t 30", FLAG_RIGHT_TOP_30},
    {"f r t 20", FLAG_RIGHT_TOP_20},
    {"f r t 10", FLAG_RIGHT_TOP_10},
    {"f r 0", FLAG_RIGHT_0},
    {"f r b 10", FLAG_RIGHT_BOTTOM_10},
    {"f r b 20", FLAG_RIGHT_BOTTOM_20},
    {"f r b 30", FLAG_RIGHT_BOTTOM_30},
    {"f p l t", FLAG_P_LEFT_TOP},
    {"f p l c", FLAG_P_LEFT_CENTER},
    {"f p l b", FLAG_P_LEFT_BOTTOM},
    {"f p r t", FLAG_P_RIGHT_TOP},
    {"f p r c", FLAG_P_RIGHT_CENTER},
    {"f p r b", FLAG_P_RIGHT_BOTTOM},
    {"f g l t", FLAG_GOAL_LEFT_TOP},
    {"f g l b", FLAG_GOAL_LEFT_BOTTOM},
    {"f g r t", FLAG_GOAL_RIGHT_TOP},
    {"f g r b", FLAG_GOAL_RIGHT_BOTTOM},
    {"f l t", FLAG_TOP_LEFT},
    {"f c t", FLAG_TOP_CENTER},
    {"f r t", FLAG_TOP_RIGHT},
    {"f l b", FLAG_BOTTOM_LEFT},
    {"f c b", FLAG_BOTTOM_CENTER},
    {"f r b", FLAG_BOTTOM_RIGHT},
    {"f c", FLAG_CENTER},
});

}  // namespace

bool Parser::parseExact() {
  data_->exactball.valid = false;
  for (ExactGoal& goal : data_->exactgoal) goal.valid = false;
  for (ExactPlayer& player : data_->exactplayer) player.valid = false;

  std::size_t players = 0;
  std::size_t goals = 0;
  while (true) {
    const GlobalObject object(msg_);
    if (!parseObject(object, players, goals)) return false;
    if (object.last) return true;
    msg_.advance(object.size);
  }
}

/// Stores one object as the next of its kind.
bool Parser::parseObject(const GlobalObject& object, std::size_t& players, std::size_t& goals) {
  ObjectNumbers numbers;
  if (object.size == 0 || !readNumbers(Scanner(object.numbers), numbers)) {
    std::cerr << "Parser: malformed object: l=" << object.nameSize << " len=" << object.size
              << "\n'" << firstLine(msg_.rest()) << "'\n";
    return false;
  }

  // The initial of a name comes in either case: a capital is lowered in a copy.
  std::string_view name = object.name.substr(0, MAX_NAME);
  std::array<char, MAX_NAME> room;
  if (isLetter(name.front()) && !isLower(name.front())) {
    name = {room.data(), name.copy(room.data(), room.size())};
    room[0] = static_cast<char>(room[0] | 0x20);
  }

  switch (determineObject(name)) {
    case OT_BALL:
      setMotion(numbers, data_->exactball);
      return true;

    case OT_PLAYER: {
      if (players == data_->exactplayer.size()) {
        std::cerr << "Parser: to manny players!\n";
        return false;
      }
      ExactPlayer& player = data_->exactplayer[players++];
      setMotion(numbers, player);
      player.body_dir = radians(numbers.value[4]);
      player.face_dir = radians(numbers.value[5]);
      player.pointto_dir = radians(numbers.pointto);
      player.tackle = numbers.tackle;
      parsePlayer(name, player.team, player.number, player.goalie);
      player.number = shirtNumber(player.number);
      return true;
    }

    case OT_GOAL: {
      if (goals == data_->exactgoal.size()) {
        std::cerr << "Parser: to manny goals!\n";
        return false;
      }
      ExactGoal& goal = data_->exactgoal[goals++];
      setMotion(numbers, goal);
      parseGoal(name, goal.which, goal.team);
      return true;
    }

    default:
      return false;
  }
}

void Parser::parsePlayer(std::string_view name, team_number& playerTeam, int& number,
                         goalie_player& goalie) const {
  playerTeam = TEAM_UNKNOWN;
  number = -1;
  goalie = GOALIE_UNKNOWN;

  Scanner at(name);
  std::string_view teamName;
  if (!at.pattern(" p \"") || !at.run(isTeamLetter, teamName)) return;
  playerTeam = teamName == team_ ? TEAM_US : TEAM_THEM;
  if (!at.literal('"') || !at.integer(number)) return;
  goalie = at.skipBlanks().startsWith("goalie") ? GOALIE_TRUE : GOALIE_FALSE;
}

void Parser::parseGoal(std::string_view name, goal_type& which, team_number& goalTeam) const {
  which = GOAL_UNKNOWN;
  goalTeam = TEAM_UNKNOWN;
  if (name.starts_with("g l")) which = GOAL_LEFT;
  if (name.starts_with("g r")) which = GOAL_RIGHT;
  if (which == GOAL_UNKNOWN) return;
  const bool isOurs = side_ == (which == GOAL_LEFT ? SIDE_LEFT : SIDE_RIGHT);
  goalTeam = isOurs ? TEAM_US : TEAM_THEM;
}

void Parser::parseFlag(std::string_view name, SensorFlag& flag) {
  flag.which = FLAG_UNKNOWN;
  for (const FlagName& row : FLAG_NAMES) {
    if (!name.starts_with(row.name)) continue;
    flag.which = row.flag;
    return;
  }
}

void Parser::parseLine(std::string_view name, SensorLine& line) {
  struct LineName {
    std::string_view name;
    line_type line;
  };
  constexpr auto LINE_NAMES = std::to_array<LineName>(
      {{"l t", LINE_TOP}, {"l l", LINE_LEFT}, {"l r", LINE_RIGHT}, {"l b", LINE_BOTTOM}});
  line.which = LINE_UNKNOWN;
  for (const LineName& row : LINE_NAMES)
    if (name.starts_with(row.name)) line.which = row.line;
}

}  // namespace vok
