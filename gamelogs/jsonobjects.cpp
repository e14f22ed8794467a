#include "jsonobjects.h"

#include <algorithm>

namespace vok::gamelogs {
namespace {

using analysis::FramePlayer;

/// The members of a player with a number, in the order of a log.
enum Member {
  UNUM,
  TYPE,
  STATE,
  X,
  Y,
  VX,
  VY,
  BODY,
  NECK,
  LAST_NEEDED = NECK,
  PX,
  PY,
  VW,
  STAMINA,
  EFFORT,
  RECOVERY,
  CAPACITY,
  FNUM,
  KICK,
  MEMBERS = KICK + analysis::COMMAND_COUNTS
};
constexpr std::array<std::string_view, MEMBERS> NAMES = {
    "unum", "type",   "state",   "x",           "y",           "vx",     "vy",        "body",
    "neck", "px",     "py",      "vw",          "stamina",     "effort", "recovery",  "capacity",
    "fnum", "kick",   "dash",    "turn",        "catch",       "move",   "turn_neck", "change_view",
    "say",  "tackle", "pointto", "attentionto", "change_focus"};

/// The members of one player as they were found. A name is looked for behind the one before, where
/// a log has it.
class Members {
 public:
  bool read(JsonText& in, std::string_view name) {
    std::string_view skipped;
    for (std::size_t tried = 0; tried < NAMES.size(); ++tried) {
      const std::size_t i = (next_ + tried) % NAMES.size();
      if (NAMES[i] != name) continue;
      next_ = i + 1;
      found_[i] = in.number(values_[i]);
      return found_[i] || in.skip(skipped);
    }
    return in.skip(skipped);
  }

  bool complete() const {
    return std::all_of(found_.begin(), found_.begin() + LAST_NEEDED + 1, [](bool f) { return f; });
  }
  double real(int i, double otherwise = analysis::ABSENT) const {
    return found_[index(i)] ? values_[index(i)] : otherwise;
  }
  int integer(int i, int otherwise = analysis::NONE) const {
    constexpr double LIMIT = 2e9;
    return static_cast<int>(std::clamp(real(i, otherwise), -LIMIT, LIMIT));
  }

 private:
  static std::size_t index(int i) { return static_cast<std::size_t>(i); }

  std::array<double, MEMBERS> values_{};
  std::array<bool, MEMBERS> found_{};
  std::size_t next_ = 0;
};

playing_side sideOf(std::string_view letter) {
  if (letter == "l") return SIDE_LEFT;
  return letter == "r" ? SIDE_RIGHT : SIDE_UNKNOWN;
}

int playerOf(playing_side side, int shirt) {
  if (side == SIDE_UNKNOWN || !isShirtNumber(shirt)) return analysis::NONE;
  return analysis::playerOf(side, shirt);
}

void fill(FramePlayer& player, const Members& members, playing_side attentionSide, char quality) {
  player.state = static_cast<std::uint32_t>(members.integer(STATE));
  player.type = members.integer(TYPE);
  player.pos = {members.real(X), members.real(Y)};
  player.vel = {members.real(VX), members.real(VY)};
  player.body = members.real(BODY);
  player.neck = members.real(NECK);
  player.armX = members.real(PX);
  player.armY = members.real(PY);
  player.viewQuality = quality;
  player.viewWidth = members.real(VW);
  player.stamina = members.real(STAMINA);
  player.effort = members.real(EFFORT);
  player.recovery = members.real(RECOVERY);
  player.capacity = members.real(CAPACITY);
  player.attention = playerOf(attentionSide, members.integer(FNUM));
  for (int i = 0; i < analysis::COMMAND_COUNTS; ++i) {
    player.counts[static_cast<std::size_t>(i)] = members.integer(KICK + i);
  }
}

bool readPlayer(JsonText& in, analysis::Frame& frame, analysis::PlayerSet& seen) {
  Members members;
  playing_side side = SIDE_UNKNOWN;
  playing_side attentionSide = SIDE_UNKNOWN;
  char quality = 0;
  const bool read = in.object([&](std::string_view name) {
    std::string_view text;
    if (in.peek() != '"') return members.read(in, name);
    if (!in.string(text)) return false;
    if (name == "side") side = sideOf(text);
    if (name == "fside") attentionSide = sideOf(text);
    if (name == "vq" && !text.empty()) quality = text.front();
    return true;
  });
  const int who = playerOf(side, members.integer(UNUM));
  if (!read || !members.complete() || who == analysis::NONE) return false;
  FramePlayer& player = frame.players[who];
  seen.add(who);
  fill(player, members, attentionSide, quality);
  return isPlausible(player.pos) && isPlausible(player.vel);
}

bool readBall(JsonText& in, analysis::Frame& frame) {
  int found = 0;
  const bool read = in.object([&](std::string_view name) {
    double value = 0;
    if (!in.number(value)) return false;
    found += name == "x" || name == "y" || name == "vx" || name == "vy" ? 1 : 0;
    if (name == "x") frame.ball.x = value;
    if (name == "y") frame.ball.y = value;
    if (name == "vx") frame.ballVel.x = value;
    if (name == "vy") frame.ballVel.y = value;
    return true;
  });
  return read && found == 4 && isPlausible(frame.ball) && isPlausible(frame.ballVel);
}

/// Every record has its time; of a standing clock's own count nothing depends.
bool readOther(JsonText& in, std::string_view name, int& time) {
  std::string_view skipped;
  return name == "time" ? in.number(time) : in.skip(skipped);
}

bool readShowObject(JsonText& in, analysis::Frame& frame) {
  analysis::PlayerSet seen;
  bool ball = false;
  frame.cycle = analysis::NONE;
  const bool read = in.object([&](std::string_view name) {
    if (name == "ball") return ball = readBall(in, frame);
    if (name == "players") return in.array([&] { return readPlayer(in, frame, seen); });
    return readOther(in, name, frame.cycle);
  });
  return read && ball && frame.cycle >= 0 && seen.count() == analysis::PLAYERS;
}

bool readModeObject(JsonText& in, analysis::Call& call) {
  int time = analysis::NONE;
  std::string_view mode;
  const bool read = in.object([&](std::string_view name) {
    return name == "mode" ? in.string(mode) : readOther(in, name, time);
  });
  call = analysis::Call::named(mode, time);
  return read && !mode.empty() && time >= 0;
}

bool readTeamObject(JsonText& in, analysis::Score& score, playing_side side) {
  return in.object([&](std::string_view name) {
    std::string_view skipped;
    if (name == "name" && in.peek() == '"') return in.string(score.names[side]);
    if (name == "score") return in.number(score.goals[side]);
    if (name == "pen_score") {
      score.shootOut = true;
      return in.number(score.penalties[side].goals);
    }
    if (name == "pen_miss") return in.number(score.penalties[side].misses);
    return in.skip(skipped);
  });
}

bool readTeamsObject(JsonText& in, analysis::Score& score) {
  score.cycle = analysis::NONE;
  for (std::string& name : score.names.of) name.clear();
  const bool read = in.object([&](std::string_view name) {
    if (name == "l") return readTeamObject(in, score, SIDE_LEFT);
    if (name == "r") return readTeamObject(in, score, SIDE_RIGHT);
    return readOther(in, name, score.cycle);
  });
  for (std::string& name : score.names.of) {
    if (name == "null") name.clear();
  }
  return read && score.cycle >= 0;
}

bool readMessageObject(JsonText& in, LogMessage& message) {
  return in.object([&](std::string_view name) {
    if (name == "board") return in.number(message.board);
    if (name == "message") return in.string(message.text);
    return readOther(in, name, message.cycle);
  });
}

/// The values as a text log writes them.
bool readParameters(JsonText& in, ParameterList& list) {
  ParameterList read;
  const bool good = in.object([&](std::string_view name) {
    std::string_view value;
    if (!in.skip(value)) return false;
    if (value == "true") value = "1";
    if (value == "false") value = "0";
    read.items.emplace_back(name, value);
    return true;
  });
  if (good) list = std::move(read);
  return good;
}

bool readType(JsonText& in, LogHead& head) {
  ParameterList type;
  if (!readParameters(in, type)) return false;
  if (head.types.size() < LogHead::MAX_TYPES) head.types.push_back(std::move(type));
  return true;
}

bool readKind(JsonText& in, std::string_view name, const JsonTargets& to, JsonKind& kind) {
  std::string_view skipped;
  const auto is = [&kind](JsonKind found) {
    kind = found;
    return true;
  };
  if (name == "show") return is(JsonKind::SHOW) && readShowObject(in, to.frame);
  if (name == "playmode") return is(JsonKind::PLAY_MODE) && readModeObject(in, to.call);
  if (name == "team") return is(JsonKind::TEAMS) && readTeamsObject(in, to.score);
  if (name == "msg") return is(JsonKind::MESSAGE) && readMessageObject(in, to.message);
  if (name == "server_param") {
    return is(JsonKind::HEAD) && readParameters(in, to.head.server);
  }
  if (name == "player_param") {
    return is(JsonKind::HEAD) && readParameters(in, to.head.player);
  }
  if (name == "player_type") return readType(in, to.head) && is(JsonKind::HEAD);
  if (name == "timestamp" && in.peek() == '"') return in.string(to.timestamp);
  return in.skip(skipped);
}

}  // namespace

bool readObject(JsonText& in, const JsonTargets& to, JsonKind& kind) {
  kind = JsonKind::OTHER;
  return in.object([&](std::string_view name) { return readKind(in, name, to, kind); });
}

}  // namespace vok::gamelogs
