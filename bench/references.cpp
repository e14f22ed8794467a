#include "references.h"

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstring>
#include <numbers>

namespace vok::bench {

Reference::Reference(std::string_view datagram) : text_(datagram) {
  std::string_view before;
  for (std::size_t at = 0; at < text_.size();) {
    const std::size_t end = std::min(text_.find_first_of(" ()", at), text_.size());
    const std::string_view word = text_.substr(at, end - at);
    at = end + 1;
    if (word.empty()) continue;
    double value = 0;
    const auto [behind, error] = std::from_chars(word.data(), word.data() + word.size(), value);
    if (error == std::errc() && behind == word.data() + word.size()) {
      const bool isInteger = before == "see_global" || before.ends_with('"');  // time, shirt
      (isInteger ? integers_ : reals_).push_back(word);
    }
    before = word;
  }
}

double Reference::run() const {
  double sum = 0;
  for (const std::string_view word : integers_) {
    int value = 0;
    std::from_chars(word.data(), word.data() + word.size(), value);
    sum += value;
  }
  for (const std::string_view word : reals_) {
    double value = 0;
    std::from_chars(word.data(), word.data() + word.size(), value);
    sum += value;
  }
  return sum + static_cast<double>(std::count(text_.begin(), text_.end(), ')'));
}

namespace {

/// The numbers of an object as they stand, angles in degrees.
struct PlainObject {
  char name[513] = "";
  double x = 0, y = 0, xVel = 0, yVel = 0;
  double body = NO_ANGLE, face = NO_ANGLE, pointTo = NO_ANGLE;
  bool tackle = false;
};

double plainRadians(double degrees) {
  if (degrees <= NO_ANGLE) return NO_ANGLE;
  double angle = degrees * std::numbers::pi / 180;
  while (angle > std::numbers::pi) angle -= 2 * std::numbers::pi;
  while (angle <= -std::numbers::pi) angle += 2 * std::numbers::pi;
  return angle;
}

void setMotion(const PlainObject& from, ExactObject& to) {
  to.valid = true;
  to.x = from.x;
  to.y = from.y;
  to.x_vel = from.xVel;
  to.y_vel = from.yVel;
}

void setPlayer(const PlainObject& from, const char* ourTeam, ExactPlayer& player) {
  setMotion(from, player);
  player.body_dir = plainRadians(from.body);
  player.face_dir = plainRadians(from.face);
  player.pointto_dir = plainRadians(from.pointTo);
  player.tackle = from.tackle;
  char team[513] = "";
  char word[513] = "";
  const int read =
      std::sscanf(from.name, " p \"%512[-_a-zA-Z0-9]\" %d %512[a-z] ", team, &player.number, word);
  player.team = read < 1 ? TEAM_UNKNOWN : std::strcmp(team, ourTeam) == 0 ? TEAM_US : TEAM_THEM;
  player.goalie = read < 2                               ? GOALIE_UNKNOWN
                  : std::strncmp(word, "goalie", 6) == 0 ? GOALIE_TRUE
                                                         : GOALIE_FALSE;
}

void setGoal(const PlainObject& from, playing_side side, ExactGoal& goal) {
  setMotion(from, goal);
  goal.which = std::strncmp(from.name, "g l", 3) == 0 ? GOAL_LEFT : GOAL_RIGHT;
  goal.team = (goal.which == GOAL_LEFT) == (side == SIDE_LEFT) ? TEAM_US : TEAM_THEM;
}

}  // namespace

bool plainView(const char* text, const char* ourTeam, playing_side side, SensorData& data) {
  int time = 0;
  int n = 0;
  if (std::strncmp(text, "(player_type ", 13) == 0) return false;
  if (std::sscanf(text, " (see %d ) %n", &time, &n) == 1) return false;
  if (std::sscanf(text, " (see_global %d %n", &time, &n) != 1) return false;
  data.type = SENSOR_TYPE_EXACT;
  data.time = time;
  std::size_t players = 0;
  std::size_t goals = 0;
  int third = 0;
  for (const char* at = text + n; third == 0;) {
    PlainObject object;
    int first = 0;
    int second = 0;
    std::sscanf(at, " ( ( %512[^)] ) %n %*[^)] ) %n ) %n ", object.name, &first, &second, &third);
    if (first == 0 || second == 0) return false;
    int read = 0;
    char flag = '\0';
    std::sscanf(at + first, " %lf %lf %lf %lf %lf %lf %n", &object.x, &object.y, &object.xVel,
                &object.yVel, &object.body, &object.face, &read);
    if (std::sscanf(at + first + read, "%lf %c", &object.pointTo, &flag) < 1) {
      std::sscanf(at + first + read, "%c", &flag);
    }
    object.tackle = flag == 't';
    at += second;

    if (object.name[0] == 'b') setMotion(object, data.exactball);
    if (object.name[0] == 'p') setPlayer(object, ourTeam, data.exactplayer.at(players++));
    if (object.name[0] == 'g') setGoal(object, side, data.exactgoal.at(goals++));
  }
  return true;
}

int plainServerParam(const char* text) {
  int items = 0;
  const char* at = text + std::strlen("(server_param ");
  const auto take = [&at](const Token& row) {
    if (row.fmt == nullptr) return false;
    int n = 0;
    short flag = 0;
    void* into = row.dt == DT_BOOL ? &flag : row.ptr;
    if (row.dt == DT_NONE) {
      std::sscanf(at, row.fmt, &n);
    } else if (std::sscanf(at, row.fmt, into, &n) != 1) {
      return false;
    }
    if (row.dt == DT_BOOL) *static_cast<bool*>(row.ptr) = flag != 0;
    at += n;
    return n != 0;
  };
  const std::vector<Token>& rows = Parser::serverParamTokens;
  while (std::any_of(rows.begin(), rows.end(), take)) ++items;
  return items;
}

std::vector<double> fieldsOf(const SensorData& data) {
  std::vector<double> fields = {static_cast<double>(data.type), static_cast<double>(data.time)};
  const auto add = [&](const ExactObject& object, std::initializer_list<double> others) {
    for (const double value :
         {static_cast<double>(object.valid), object.x, object.y, object.x_vel, object.y_vel}) {
      fields.push_back(value);
    }
    fields.insert(fields.end(), others);
  };
  add(data.exactball, {});
  for (const ExactGoal& goal : data.exactgoal)
    add(goal, {static_cast<double>(goal.which), static_cast<double>(goal.team)});
  for (const ExactPlayer& p : data.exactplayer) {
    add(p,
        {static_cast<double>(p.team), static_cast<double>(p.number), static_cast<double>(p.goalie),
         p.body_dir, p.face_dir, p.pointto_dir, static_cast<double>(p.tackle)});
  }
  return fields;
}

}  // namespace vok::bench
