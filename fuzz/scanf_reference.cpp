#include "scanf_reference.h"

#include <algorithm>
#include <cctype>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <numbers>
#include <string>

namespace vok::test {

namespace {

bool startsWith(const char* text, const char* head) {
  return std::strncmp(text, head, std::strlen(head)) == 0;
}

void scanName(const char* name, ExactPlayer& player) {
  char team[300] = "";
  char word[300] = "";
  player.number = -1;
  const int read =
      std::sscanf(name, " p \"%299[-_a-zA-Z0-9]\" %d %299[a-z] ", team, &player.number, word);
  player.team = *team == '\0' ? TEAM_UNKNOWN : team == std::string("Alpha") ? TEAM_US : TEAM_THEM;
  const bool isGoalie = std::strncmp(word, "goalie", 6) == 0;
  player.goalie = read < 2 ? GOALIE_UNKNOWN : isGoalie ? GOALIE_TRUE : GOALIE_FALSE;
  player.number = shirt(player.number);
}

bool scanVoice(const char* at, Heard& heard) {
  char* text = heard.text;
  double* direction = &heard.direction;
  heard.sender = SENDER_PLAYER_US;
  if (std::sscanf(at, " our %d)", &heard.number) == 1) return true;
  if (std::sscanf(at, "%lf our %d \"%299[-0-9a-zA-Z .+*/?<>_()]\"", direction, &heard.number,
                  text) == 3)
    return true;
  heard.number = -1;
  heard.sender = SENDER_PLAYER_THEM;
  if (std::strncmp(at, "opp)", 4) == 0) return true;
  if (std::sscanf(at, "%lf opp \"%299[-0-9a-zA-Z .+*/?<>_()]\"", direction, text) == 2) return true;
  heard.sender = SENDER_DIR;
  if (std::sscanf(at, "%lf \"%299[-0-9a-zA-Z .+*/?<>_()]\"", direction, text) == 2) return true;
  heard.sender = SENDER_PLAYER;
  char name[300];
  if (std::sscanf(at, "(  %299[^)] ) \"%299[-0-9a-zA-Z .+*/?<>_()]\"", name, text) == 2) {
    std::sscanf(name, "p \"%299[^\"]\" %d", heard.name, &heard.number);
    return true;
  }
  return std::sscanf(at, "(%299[-0-9a-zA-Z .+*/?<>_\"]) \"%299[-0-9a-zA-Z .+*/?<>_()]\"",
                     heard.name, text) == 2;
}

bool scanCoach(const char* at, char* text) {
  int end = 0;
  std::sscanf(at, " (freeform \"%299[-0-9a-zA-Z .+*/?<>_]\")%n", text, &end);
  if (end > 0) return true;
  *text = '\0';
  for (const char* head : {"(advice", "(info", "(meta", "(define"}) {
    if (!startsWith(at, head)) continue;
    std::strcpy(text, at + std::strlen(head));
    return true;
  }
  return startsWith(at, "(unsupported_clang)");
}

}  // namespace

double radians(double degrees) {
  return degrees > NO_ANGLE ? Angle::mod2pi(degrees * std::numbers::pi / 180) : NO_ANGLE;
}

int shirt(int number) {
  return number >= 1 && number <= 11 ? number : -1;
}

bool scanView(const char* at, SensorData& view, bool& isFinite) {
  std::size_t players = 0;
  std::size_t goals = 0;
  for (int last = 0; last == 0;) {
    char name[300];
    int nameEnd = 0;
    int end = 0;
    std::sscanf(at, " ( ( %299[^)] ) %n %*[^)] ) %n ) %n ", name, &nameEnd, &end, &last);
    if (nameEnd == 0 || end == 0) return false;

    ExactPlayer object;
    const char* numbers = at + nameEnd;
    int behind = 0;
    char flag = '\0';
    std::sscanf(numbers, " %lf %lf %lf %lf %lf %lf %n", &object.x, &object.y, &object.x_vel,
                &object.y_vel, &object.body_dir, &object.face_dir, &behind);
    if (behind > 0 && std::sscanf(numbers + behind, "%lf %c", &object.pointto_dir, &flag) < 1)
      std::sscanf(numbers + behind, "%c", &flag);
    object.valid = true;
    object.tackle = flag == 't';
    for (const double* motion : {&object.x, &object.y, &object.x_vel, &object.y_vel})
      isFinite = isFinite && std::isfinite(*motion);
    for (double* angle : {&object.body_dir, &object.face_dir, &object.pointto_dir}) {
      isFinite = isFinite && std::isfinite(*angle);
      *angle = radians(*angle);
    }

    name[0] = static_cast<char>(std::tolower(static_cast<unsigned char>(name[0])));
    if (name[0] == 'b') {
      view.exactball = object;
    } else if (name[0] == 'p' && players < 22) {
      scanName(name, object);
      view.exactplayer[players++] = object;
    } else if (name[0] == 'g' && goals < 2) {
      static_cast<ExactObject&>(view.exactgoal[goals++]) = object;
    } else {
      return false;
    }
    at += end;
  }
  return true;
}

bool scanHeard(const char* at, Heard& heard) {
  const struct {
    const char *word, *format;
    sender_type sender;
  } speakers[] = {{"referee", " %299[-0-9a-zA-Z .+*/?<>_()]", SENDER_REFEREE},
                  {"coach", " %299[-0-9a-zA-Z .+*/?<>_()]", SENDER_COACH},
                  {"self", " \"%299[-0-9a-zA-Z .+*/?<>_()]", SENDER_SELF}};
  char word[300];
  int n = 0;
  if (std::sscanf(at, " %299s %n ", word, &n) < 1) return false;
  for (const auto& speaker : speakers) {
    if (!startsWith(word, speaker.word)) continue;
    heard.sender = speaker.sender;
    if (std::sscanf(at + n, speaker.format, heard.text) != 1) return false;
    const bool isGoal = speaker.sender == SENDER_REFEREE &&
                        (startsWith(heard.text, "goal_l") || startsWith(heard.text, "goal_r"));
    return !isGoal || std::sscanf(heard.text, "goal_%*c_%d", &heard.score) == 1;
  }
  if (startsWith(word, "online_coach_left") || startsWith(word, "online_coach_right")) {
    heard.sender = SENDER_ONLINECOACH;
    return scanCoach(at + n, heard.text);
  }
  return scanVoice(at, heard);
}

void scanParams(const char* at, const std::vector<Token>& rows) {
  const auto take = [&at](const Token& row) {
    if (row.fmt == nullptr) return false;
    int n = 0;
    double real = 0;
    int integer = 0;
    int read = 0;
    if (row.dt == DT_NONE) std::sscanf(at, row.fmt, &n);
    if (row.dt == DT_DOUBLE) read = std::sscanf(at, row.fmt, &real, &n);
    if (row.dt == DT_INT) read = std::sscanf(at, row.fmt, &integer, &n);
    if (row.dt == DT_BOOL) {
      std::string wide(row.fmt);
      wide.erase(wide.rfind('h'), 1);
      read = std::sscanf(at, wide.c_str(), &integer, &n);
      // Beyond a short's range it is no number on purpose.
      if (read == 1 && integer != static_cast<short>(integer)) return false;
    }
    at += n;
    if (row.dt == DT_NONE) return n > 0;
    if (read != 1) return false;
    if (row.dt == DT_DOUBLE) *static_cast<double*>(row.ptr) = real;
    if (row.dt == DT_INT) *static_cast<int*>(row.ptr) = integer;
    if (row.dt == DT_BOOL) *static_cast<bool*>(row.ptr) = integer != 0;
    return true;
  };
  // A number with a stray form behind it is stored, and nothing is read any more.
  for (const char* before = nullptr; at != before;) {
    before = at;
    static_cast<void>(std::any_of(rows.begin(), rows.end(), take));
  }
}

}  // namespace vok::test
