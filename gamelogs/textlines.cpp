#include "textlines.h"

#include <charconv>
#include <cmath>

#include "scanner.h"

namespace vok::gamelogs {

using analysis::ABSENT;
using analysis::FramePlayer;
using analysis::isAbsent;
using analysis::NONE;

bool isPlausible(const Vector2d& v) {
  return std::abs(v.x) <= MAX_COORDINATE && std::abs(v.y) <= MAX_COORDINATE;
}

namespace {

// ------------------------------------------------------------------------------------- reading

bool readVector(Scanner& in, Vector2d& v) {
  return in.real(v.x) && in.real(v.y) && isPlausible(v);
}

/// "l 7", as a player of the 22.
bool readWho(Scanner& in, int& player) {
  char side = 0;
  int shirt = 0;
  if (!in.character(side) || (side != 'l' && side != 'r')) return false;
  if (!in.integer(shirt) || !isShirtNumber(shirt)) return false;
  player = analysis::playerOf(side == 'l' ? SIDE_LEFT : SIDE_RIGHT, shirt);
  return true;
}

bool readCounts(Scanner& in, FramePlayer& player) {
  player.counts[analysis::COUNT_CHANGE_FOCUS] = NONE;
  std::size_t n = 0;
  while (n < player.counts.size() && in.integer(player.counts[n])) ++n;
  return n >= analysis::COUNT_CHANGE_FOCUS;
}

bool readStamina(Scanner& in, FramePlayer& player) {
  player.capacity = ABSENT;
  if (!in.real(player.stamina) || !in.real(player.effort) || !in.real(player.recovery)) {
    return false;
  }
  in.real(player.capacity);
  return true;
}

/// The groups in parentheses behind a player's place, in any order; unknown ones are skipped.
bool readGroup(Scanner& in, FramePlayer& player, bool& counted) {
  if (in.literal("c ")) return counted = readCounts(in, player);
  if (in.literal("s ")) return readStamina(in, player);
  if (in.literal("fp ")) return in.real(player.focusDistance) && in.real(player.focusDirection);
  if (in.literal("f ")) return readWho(in, player.attention);
  if (in.literal("v ")) return in.character(player.viewQuality) && in.real(player.viewWidth);
  std::string_view skipped;
  return in.until(')', skipped);
}

bool readPlayer(Scanner& in, analysis::Frame& frame, analysis::PlayerSet& seen) {
  int who = NONE;
  if (!in.literal(" ((") || !readWho(in, who)) return false;
  FramePlayer& player = frame.players[who];
  seen.add(who);
  if (!in.literal(") ") || !in.integer(player.type) || !in.literal(' ')) return false;
  in.literal("0x");  // a server writes 0 without it
  if (!in.hexadecimal(player.state)) return false;
  if (!readVector(in, player.pos) || !readVector(in, player.vel)) return false;
  if (!in.real(player.body) || !in.real(player.neck)) return false;

  player.armX = player.armY = ABSENT;
  player.focusDistance = player.focusDirection = ABSENT;
  player.attention = NONE;
  if (!in.startsWith(" (") && (!in.real(player.armX) || !in.real(player.armY))) return false;
  bool counted = false;
  while (in.literal(" (")) {
    if (!readGroup(in, player, counted) || !in.literal(')')) return false;
  }
  return counted && in.literal(')');
}

/// A name without blanks; "null" stands for a side without a team.
bool readName(Scanner& in, std::string& name) {
  std::string_view word;
  if (!in.word(word)) return false;
  name = word == "null" ? std::string_view() : word;
  return true;
}

bool readPenalties(Scanner& in, analysis::Penalties& penalties) {
  return in.integer(penalties.goals) && in.integer(penalties.misses);
}

// ------------------------------------------------------------------------------------- writing

void append(std::string& to, int value) {
  to += std::to_string(value);
}

void append(std::string& to, double value) {
  constexpr std::size_t LONGEST = 400;
  std::array<char, LONGEST> text{};
  const double told = isAbsent(value) ? 0 : value;
  const auto end =
      std::to_chars(text.data(), text.data() + text.size(), told, std::chars_format::fixed);
  to.append(text.data(), end.ptr);
}

/// Blanks before each.
template <typename... Number>
void appendAll(std::string& to, Number... numbers) {
  ((to += ' ', append(to, numbers)), ...);
}

void appendWho(std::string& to, int player) {
  to += analysis::sideOf(player) == SIDE_LEFT ? "l " : "r ";
  append(to, analysis::shirtOf(player));
}

void appendState(std::string& to, std::uint32_t state) {
  std::array<char, 8> digits{};
  const auto end = std::to_chars(digits.data(), digits.data() + digits.size(), state, 16);
  to.append(state == 0 ? " " : " 0x").append(digits.data(), end.ptr);
}

void appendPlayer(std::string& to, const analysis::Frame& frame, int who) {
  const FramePlayer& player = frame.players[who];
  to += " ((";
  appendWho(to, who);
  to += ')';
  appendAll(to, player.type == NONE ? 0 : player.type);
  appendState(to, player.state);
  appendAll(to, player.pos.x, player.pos.y, player.vel.x, player.vel.y, player.body, player.neck);
  if (!isAbsent(player.armX)) appendAll(to, player.armX, player.armY);
  to.append(" (v ").append(1, player.viewQuality == 'l' ? 'l' : 'h');
  appendAll(to, player.viewWidth);
  to += ") (fp";
  appendAll(to, player.focusDistance, player.focusDirection);
  to += ") (s";
  appendAll(to, player.stamina, player.effort, player.recovery, player.capacity);
  to += ')';
  if (player.attention != NONE) {
    to += " (f ";
    appendWho(to, player.attention);
    to += ')';
  }
  to += " (c";
  for (const int count : player.counts) appendAll(to, count == NONE ? 0 : count);
  to += "))";
}

}  // namespace

bool readShow(std::string_view line, analysis::Frame& frame) {
  Scanner in(line);
  if (!in.literal("(show ") || !in.integer(frame.cycle) || !in.literal(" ((b)")) return false;
  if (!readVector(in, frame.ball) || !readVector(in, frame.ballVel) || !in.literal(')')) {
    return false;
  }
  analysis::PlayerSet seen;
  for (int i = 0; i < analysis::PLAYERS; ++i) {
    if (!readPlayer(in, frame, seen)) return false;
  }
  return seen.count() == analysis::PLAYERS && in.literal(')') && in.skipBlanks().rest().empty();
}

bool readPlayMode(std::string_view line, analysis::Call& call) {
  Scanner in(line);
  int cycle = 0;
  std::string_view name;
  if (!in.literal("(playmode ") || !in.integer(cycle)) return false;
  if (!in.skipBlanks().until(')', name) || !in.literal(')')) return false;
  call = analysis::Call::named(name, cycle);
  return in.skipBlanks().rest().empty();
}

bool readTeams(std::string_view line, analysis::Score& score) {
  if (line.empty() || line.back() != ')') return false;
  line.remove_suffix(1);  // a name may hold a parenthesis
  Scanner in(line);
  if (!in.literal("(team ") || !in.integer(score.cycle)) return false;
  if (!readName(in, score.names[SIDE_LEFT]) || !readName(in, score.names[SIDE_RIGHT])) return false;
  if (!in.integer(score.goals[SIDE_LEFT]) || !in.integer(score.goals[SIDE_RIGHT])) return false;
  if (in.skipBlanks().rest().empty()) return true;
  score.shootOut = true;
  return readPenalties(in, score.penalties[SIDE_LEFT]) &&
         readPenalties(in, score.penalties[SIDE_RIGHT]) && in.skipBlanks().rest().empty();
}

bool readMessage(std::string_view line, LogMessage& message) {
  constexpr std::string_view END = "\")";
  Scanner in(line);
  if (!in.literal("(msg ") || !in.integer(message.cycle) || !in.integer(message.board))
    return false;
  if (!in.skipBlanks().literal('"')) return false;
  const std::size_t end = in.rest().rfind(END);
  if (end == std::string_view::npos) return false;
  message.text = in.rest().substr(0, end);
  return true;
}

void writeShow(const analysis::Frame& frame, std::string& to) {
  to += "(show";
  appendAll(to, frame.cycle);
  to += " ((b)";
  appendAll(to, frame.ball.x, frame.ball.y, frame.ballVel.x, frame.ballVel.y);
  to += ')';
  for (int i = 0; i < analysis::PLAYERS; ++i) appendPlayer(to, frame, i);
  to += ")\n";
}

void writePlayMode(const analysis::Call& call, std::string& to) {
  to += "(playmode";
  appendAll(to, call.cycle);
  to.append(" ").append(call.name()).append(")\n");
}

void writeTeams(const analysis::Score& score, std::string& to) {
  to += "(team";
  appendAll(to, score.cycle);
  for (const playing_side side : analysis::BOTH_SIDES) {
    const std::string& name = score.names[side];
    to.append(" ").append(name.empty() ? "null" : name);
  }
  appendAll(to, score.goals[SIDE_LEFT], score.goals[SIDE_RIGHT]);
  if (score.shootOut) {
    for (const playing_side side : analysis::BOTH_SIDES) {
      appendAll(to, score.penalties[side].goals, score.penalties[side].misses);
    }
  }
  to += ")\n";
}

void writeMessage(const LogMessage& message, std::string& to) {
  to += "(msg";
  appendAll(to, message.cycle, message.board);
  to.append(" \"").append(message.text).append("\")\n");
}

}  // namespace vok::gamelogs
