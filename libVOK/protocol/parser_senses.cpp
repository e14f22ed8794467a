// What a player is told of itself and sees from where it stands. A coach is sent neither.
#include <array>
#include <iostream>
#include <tuple>

#include "Parser.h"
#include "scanner.h"

namespace vok {
namespace {

/// Takes one "(...)" with everything nested in it and the blanks before it; `inside` is the text
/// between its parentheses.
bool takeItem(Scanner& at, std::string_view& inside) {
  Scanner ahead = at;
  if (!ahead.skipBlanks().literal('(')) return false;
  const std::string_view text = ahead.rest();
  int depth = 1;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (text[i] == '(') ++depth;
    if (text[i] == ')') --depth;
    if (depth > 0) continue;
    inside = text.substr(0, i);
    ahead.advance(i + 1);
    at = ahead;
    return true;
  }
  return false;
}

double radians(double degrees) {
  return Angle::mod2pi(toRadians(degrees));
}

bool readAngle(Scanner& at, double& angle) {
  double degrees = 0;
  if (!at.real(degrees)) return false;
  angle = radians(degrees);
  return true;
}

/// Reads a number of commands. It is bounded because the cycle timing subtracts and increments it.
bool readCount(Scanner& at, int& count) {
  constexpr int MAX_COUNT = 1'000'000'000;
  return at.integer(count) && count >= 0 && count <= MAX_COUNT;
}

bool readViewMode(Scanner& at, SensorData& body) {
  std::string_view quality;
  std::string_view width;
  if (!at.word(quality) || !at.word(width)) return false;
  body.my_view_quality = quality == "high" ? VIEW_QUALITY_HIGH : VIEW_QUALITY_LOW;
  body.my_view_width = width == "narrow"   ? VIEW_WIDTH_NARROW
                       : width == "normal" ? VIEW_WIDTH_NORMAL
                       : width == "wide"   ? VIEW_WIDTH_WIDE
                                           : VIEW_WIDTH_NONE;
  return true;
}

bool readArm(Scanner& at, SensorData& body) {
  return at.pattern(" (movable ") && at.integer(body.arm_movable) && at.pattern(") (expires ") &&
         at.integer(body.arm_expires) && at.pattern(") (target ") && at.real(body.arm_target.x) &&
         at.real(body.arm_target.y) && at.pattern(") (count ") &&
         readCount(at, body.point_to_count);
}

/// Reads "(target none)", or the side and number of the player that is listened to.
bool readFocus(Scanner& at, SensorData& body, playing_side side) {
  char letter = '\0';
  body.attentionTo = 0;
  if (!at.pattern(" (target ")) return false;
  if (!at.literal("none")) {
    if (!at.character(letter) || !at.integer(body.attentionTo)) return false;
    if (!isShirtNumber(body.attentionTo)) return false;
    body.attentionToOurTeam = letter == (side == SIDE_LEFT ? 'l' : 'r');
  }
  return at.pattern(") (count ") && readCount(at, body.attention_to_count);
}

bool readTackle(Scanner& at, SensorData& body) {
  return at.pattern(" (expires ") && at.integer(body.tackle_expires) && at.pattern(") (count ") &&
         readCount(at, body.tackle_count);
}

struct CountName {
  std::string_view name;
  int SensorData::*count;
};

constexpr std::size_t NO_LIMIT = Scanner::NO_LIMIT;

constexpr auto COUNT_NAMES = std::to_array<CountName>({
    {"kick", &SensorData::kick_count},
    {"dash", &SensorData::dash_count},
    {"turn", &SensorData::turn_count},
    {"say", &SensorData::say_count},
    {"turn_neck", &SensorData::turn_neck_count},
    {"catch", &SensorData::catch_count},
    {"move", &SensorData::move_count},
    {"change_view", &SensorData::change_view_count},
});

/// Reads one item by its name; unknown items, which newer servers send, are skipped.
bool readBodyItem(std::string_view name, Scanner at, SensorData& body, playing_side side) {
  if (name == "view_mode") return readViewMode(at, body);
  if (name == "stamina") return at.real(body.stamina) && at.real(body.effort);
  if (name == "speed") return at.real(body.speed) && readAngle(at, body.speed_angle);
  if (name == "head_angle") return readAngle(at, body.head_angle);
  if (name == "arm") return readArm(at, body);
  if (name == "focus") return readFocus(at, body, side);
  if (name == "tackle") return readTackle(at, body);
  for (const CountName& row : COUNT_NAMES) {
    if (name == row.name) return readCount(at, body.*row.count);
  }
  return true;
}

/// The numbers of a seen object: distance and direction, their changes, then a player's body and
/// face direction, as many of these pairs as could be seen. An odd number at the end is the
/// direction of an arm, and a "t" behind them tells that the player tackles. A view of low quality
/// tells the direction alone.
struct SeenNumbers {
  std::array<double, 7> value{};
  std::size_t count = 0;
  bool tackle = false;

  /// False when one of them is not finite.
  bool read(Scanner at) {
    while (count < value.size() && at.real(value[count])) ++count;
    if (at.atUnfitReal()) return false;
    tackle = at.skipBlanks().startsWith("t");
    return true;
  }

  void setObject(SensorObject& object) const {
    object.valid = true;
    object.dist = count == 1 ? NO_DISTANCE : value[0];
    object.dir = radians(value[count == 1 ? 0 : 1]);
    object.changes = count >= 4;
    if (count < 4) return;
    object.dist_change = value[2];
    object.dir_change = radians(value[3]);
  }

  void setPlayer(SensorPlayer& player) const {
    setObject(player);
    player.tackle = tackle;
    if (count % 2 == 1 && count > 1) player.pointto_dir = radians(value[count - 1]);
    if (count < 6) return;
    player.body_dir = radians(value[4]);
    player.face_dir = radians(value[5]);
  }
};

/// An object so near that it is felt, but out of sight: its name is one upper-case letter.
bool isOutOfSight(std::string_view name) {
  return !name.empty() && std::string_view("BFGP").find(name.front()) != std::string_view::npos;
}

/// What is felt: a ball, or a player of whom nothing else is known. Which flag or goal it is, is
/// not told, so that they tell nothing.
ObjectType feltObject(std::string_view name) {
  return name.front() == 'B' ? OT_BALL : name.front() == 'P' ? OT_PLAYER : OT_NONE;
}

/// Stores a landmark at the index of its kind; one with an unknown name is dropped.
template <typename Landmark, typename Landmarks>
void store(const Landmark& landmark, int which, Landmarks& landmarks) {
  if (which >= 0) landmarks[static_cast<std::size_t>(which)] = landmark;
}

/// How many objects of a kind a view may hold, by `ObjectType`; a view with more is malformed.
struct Limit {
  std::size_t count;
  const char* name;
};
constexpr std::array<Limit, 6> LIMITS = {
    {{NO_LIMIT, ""},
     {std::tuple_size_v<decltype(SensorData::player)>, "players"},
     {NO_LIMIT, ""},
     {NUM_GOALS, "goals"},
     {NUM_FLAGS, "flags"},
     {NUM_LINES, "lines"}}};

}  // namespace

bool Parser::parseSenseBody() {
  if (isCoach_) return false;
  Scanner list(msg_);
  std::string_view item;
  while (!list.startsWith(")")) {
    if (!takeItem(list, item)) return false;
    Scanner at(item);
    std::string_view name;
    if (!at.word(name) || !readBodyItem(name, at, *data_, side_)) return false;
    list.skipBlanks();
  }
  bodyViewWidth_ = data_->my_view_width;
  return true;
}

bool Parser::parseSee() {
  if (isCoach_) return false;
  data_->see_view_width = bodyViewWidth_;
  Scanner list(msg_);
  std::string_view item;
  std::array<std::size_t, LIMITS.size()> seen{};
  while (!list.startsWith(")")) {
    if (!takeItem(list, item)) return false;
    Scanner at(item);
    std::string_view name;
    SeenNumbers numbers;
    if (!takeItem(at, name) || !numbers.read(at)) return false;
    list.skipBlanks();

    ObjectType type = determineObject(name);
    if (type == OT_NONE) {
      if (!isOutOfSight(name)) {
        std::cerr << "Parser: unknown object type\n";
        return false;
      }
      type = feltObject(name);
      if (type == OT_NONE) continue;
    }
    if (numbers.count == 0) continue;

    const auto kind = static_cast<std::size_t>(type);
    if (seen[kind]++ == LIMITS[kind].count) {
      std::cerr << "Parser: to manny " << LIMITS[kind].name << "!\n";
      return false;
    }
    switch (type) {
      case OT_BALL:
        data_->ball = {};
        numbers.setObject(data_->ball);
        break;
      case OT_PLAYER: {
        SensorPlayer& player = data_->player[seen[kind] - 1];
        numbers.setPlayer(player);
        parsePlayer(name, player.team, player.number, player.goalie);
        player.number = shirtNumber(player.number);
        break;
      }
      case OT_GOAL: {
        SensorGoal goal;
        numbers.setObject(goal);
        parseGoal(name, goal.which, goal.team);
        store(goal, goal.which, data_->goal);
        break;
      }
      case OT_FLAG: {
        SensorFlag flag;
        numbers.setObject(flag);
        parseFlag(name, flag);
        store(flag, flag.which, data_->flag);
        break;
      }
      case OT_LINE: {
        SensorLine line;
        numbers.setObject(line);
        parseLine(name, line);
        store(line, line.which, data_->line);
        break;
      }
      case OT_NONE:
        break;
    }
  }
  return true;
}

}  // namespace vok
