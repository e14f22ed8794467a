// The global view, and the names of the objects.
#include <array>
#include <iostream>

#include "Parser.h"
#include "landmarks.h"
#include "printable.h"
#include "scanner.h"

namespace vok {

/// One object of the list, " ( ( name ) numbers ) ".
struct Parser::GlobalObject {
  std::string_view name;
  std::string_view numbers;
  std::size_t nameSize = 0;  ///< characters up to the end of the name's parentheses; 0 without one
  std::size_t size = 0;      ///< characters up to the end of the object; 0 when it has no end
  bool last = false;         ///< the list ends behind it

  explicit GlobalObject(std::string_view text) {
    Scanner at(text);
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

/// Position, velocity, body and neck angle in `value`; then the arm's angle and the tackle flag.
/// All angles are in degrees.
struct ObjectNumbers {
  std::array<double, 6> value{0, 0, 0, 0, NO_ANGLE, NO_ANGLE};
  double pointto = NO_ANGLE;
  bool tackle = false;
};

/// Reads as many numbers as there are; false when one of them is not finite.
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
  return degrees > NO_ANGLE ? Angle::mod2pi(toRadians(degrees)) : NO_ANGLE;
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

}  // namespace

bool Parser::parseExact() {
  if (data_ == nullptr) return false;
  data_->exactball.valid = false;
  for (ExactGoal& goal : data_->exactgoal) goal.valid = false;
  for (ExactPlayer& player : data_->exactplayer) player.valid = false;

  std::size_t players = 0;
  std::size_t goals = 0;
  while (true) {
    const GlobalObject object(msg_);
    if (!parseObject(object, players, goals)) return false;
    if (object.last) return true;
    msg_.remove_prefix(object.size);
  }
}

/// Stores one object as the next of its kind.
bool Parser::parseObject(const GlobalObject& object, std::size_t& players, std::size_t& goals) {
  ObjectNumbers numbers;
  if (object.size == 0 || !readNumbers(Scanner(object.numbers), numbers)) {
    std::cerr << "Parser: malformed object: l=" << object.nameSize << " len=" << object.size
              << "\n'" << printable(firstLine(msg_)) << "'\n";
    return false;
  }

  // The initial of a name comes in either case. A capital becomes a small letter in a copy.
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
  which = goalByName(name);
  goalTeam = TEAM_UNKNOWN;
  if (which == GOAL_UNKNOWN) return;
  const bool isOurs = side_ == (which == GOAL_LEFT ? SIDE_LEFT : SIDE_RIGHT);
  goalTeam = isOurs ? TEAM_US : TEAM_THEM;
}

void Parser::parseFlag(std::string_view name, SensorFlag& flag) {
  flag.which = flagByName(name);
}

void Parser::parseLine(std::string_view name, SensorLine& line) {
  line.which = lineByName(name);
}

}  // namespace vok
