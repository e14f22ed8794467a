#include "coachrecording.h"

#include <utility>

#include "scanner.h"

namespace vok::gamelogs {

using analysis::CallKind;
using analysis::Told;

bool CoachRecording::open(TextWindow window, std::string& error) {
  window_ = std::move(window);
  std::string_view line;
  bool cut = false;
  // What the coach sent comes first in its own recording.
  do {
    ++line_;
    if (!window_.line(line, cut) || !readLine(line)) break;
  } while (recorded_.sent());
  if (side_ != SIDE_UNKNOWN) return true;
  error = "is no recording of a coach: it does not begin with the answer to a check-in";
  return false;
}

Told CoachRecording::next() {
  for (;;) {
    if (std::exchange(tellsCall_, false)) return Told::CALL;
    if (std::exchange(tellsScore_, false)) return Told::SCORE;
    if (std::exchange(tellsFrame_, false)) return Told::FRAME;
    std::string_view line;
    bool cut = false;
    if (!window_.line(line, cut)) {
      cut_ = cut_ || !window_.problem().empty();
      return Told::END;
    }
    ++line_;
    if (readLine(line)) continue;
    if (cut) {
      cut_ = true;
    } else if (refused_++ == 0) {
      firstRefused_ = line_;
    }
  }
}

bool CoachRecording::readLine(std::string_view line) {
  if (!recorded_.read(line)) return false;
  if (recorded_.sent()) return true;
  std::string_view text = recorded_.text;
  while (!text.empty() && (text.back() == '\0' || text.back() == '\r')) text.remove_suffix(1);
  return readText(text);
}

/// What is not known is no damage: a server says a lot.
bool CoachRecording::readText(std::string_view text) {
  if (text.starts_with("(see_global ")) return readView(text);
  if (text.starts_with("(hear ")) return readCall(text);
  if (text.starts_with("(change_player_type ")) return readTypeChange(text);
  if (text.starts_with("(init ")) {
    Scanner in(text);
    char side = 0;
    if (in.literal("(init ") && in.character(side)) {
      if (side == 'l') side_ = SIDE_LEFT;
      if (side == 'r') side_ = SIDE_RIGHT;
    }
    return true;
  }
  return readHead(text);
}

bool CoachRecording::readHead(std::string_view text) {
  ParameterList type;
  const bool isServer = text.starts_with("(server_param ");
  const bool isType = text.starts_with("(player_type ");
  if (!isServer && !isType) return true;
  const bool read =
      isServer ? head_.server.read(text, "server_param ") : type.read(text, "player_type ");
  if (read && isType && head_.types.size() < LogHead::MAX_TYPES) {
    head_.types.push_back(std::move(type));
  }
  rules_ = head_.rules();
  return read;
}

/// "(hear T referee NAME)"; who else speaks does not matter.
bool CoachRecording::readCall(std::string_view text) {
  Scanner in(text);
  int cycle = 0;
  std::string_view name;
  if (!in.literal("(hear ") || !in.integer(cycle) || !in.literal(" referee ")) return true;
  if (!in.until(')', name)) return false;
  announce(name, cycle);
  return true;
}

/// The words of the referee where they differ from the play modes of a game log.
void CoachRecording::announce(std::string_view name, int cycle) {
  const auto sideBehind = [name](std::string_view head) {
    const std::string_view rest = name.substr(std::min(head.size(), name.size()));
    if (!name.starts_with(head)) return SIDE_UNKNOWN;
    return rest.starts_with('l') ? SIDE_LEFT : rest.starts_with('r') ? SIDE_RIGHT : SIDE_UNKNOWN;
  };
  if (const playing_side side = sideBehind("goalie_catch_ball_"); side != SIDE_UNKNOWN) {
    caught_[side] = true;
    return;
  }
  for (const auto& [head, bit] : {std::pair("yellow_card_", analysis::STATE_YELLOW_CARD),
                                  {"red_card_", analysis::STATE_RED_CARD}}) {
    const playing_side side = sideBehind(head);
    int shirt = 0;
    if (side == SIDE_UNKNOWN) continue;
    Scanner in(name.substr(std::string_view(head).size() + 1));
    if (in.literal('_') && in.integer(shirt) && isShirtNumber(shirt)) {
      marks_[analysis::playerOf(side, shirt)] |= bit;
      carded_.add(analysis::playerOf(side, shirt));
    }
    return;
  }
  if (sideBehind("goal_") != SIDE_UNKNOWN) name = name.substr(0, 6);  // "goal_l_3"
  if (name == "half_time" || name == "time_extended") halfEnd_ = cycle;
  if (name == "time_up") name = "time_over";
  const analysis::Call call = analysis::Call::named(name, cycle);
  if (call.kind == CallKind::OTHER) return;
  kickedOff_ = call.kind != CallKind::BEFORE_KICK_OFF;
  if (call.kind == CallKind::TIME_OVER) ended_ = true;
  if (!kickedOff_) return;
  call_ = call;
  tellsCall_ = true;
  count(call);
}

void CoachRecording::count(const analysis::Call& call) {
  tellsScore_ = true;
  score_.cycle = call.cycle;
  switch (call.kind) {
    case CallKind::GOAL:
      ++score_.goals[call.side];
      return;
    case CallKind::PENALTY_SETUP:
      score_.shootOut = true;
      return;
    case CallKind::PENALTY_SCORE:
      ++score_.penalties[call.side].goals;
      return;
    case CallKind::PENALTY_MISS:
      ++score_.penalties[call.side].misses;
      return;
    default:
      tellsScore_ = false;
  }
}

/// Only of the coach's own players the new type is named.
bool CoachRecording::readTypeChange(std::string_view text) {
  Scanner in(text);
  int shirt = 0;
  int type = 0;
  if (!in.literal("(change_player_type ") || !in.integer(shirt)) return false;
  if (in.integer(type) && isShirtNumber(shirt)) types_[shirt] = type;
  return true;
}

/// The left team comes first in a view, the right one last.
bool CoachRecording::findTeams(std::string_view view) {
  static constexpr std::string_view HEAD = "((p \"";
  const auto nameAt = [view](std::size_t at) {
    const std::string_view name = view.substr(at + HEAD.size());
    return name.substr(0, name.find('"'));
  };
  const std::size_t first = view.find(HEAD);
  if (first == std::string_view::npos) return false;
  score_.names[SIDE_LEFT] = nameAt(first);
  score_.names[SIDE_RIGHT] = nameAt(view.rfind(HEAD));
  parser_.emplace(score_.names[side_].c_str(), CLIENT_ONLINECOACH, 7, 9);
  parser_->setSide(side_);
  tellsScore_ = true;
  return true;
}

bool CoachRecording::readView(std::string_view text) {
  Scanner in(text);
  int cycle = 0;
  if (!in.literal("(see_global ") || !in.integer(cycle)) return false;
  // A game log has no frames before the kick-off, and none of the cycle in which a half ends.
  if (cycle == 0 || !kickedOff_ || cycle == halfEnd_) return true;
  if (!parser_ && !findTeams(text)) return false;
  if (!parser_->parseServerString(text, record_) || !record_.exactball.valid) return false;

  frame_.cycle = cycle;
  frame_.counted = false;
  frame_.ball = {record_.exactball.x, record_.exactball.y};
  frame_.ballVel = {record_.exactball.x_vel, record_.exactball.y_vel};
  for (analysis::FramePlayer& player : frame_.players.of) player.state = 0;
  for (const ExactPlayer& seen : record_.exactplayer) fill(seen);
  // Who is sent off is in no view: he shows his card once more, where he was.
  for (int i = 0; i < analysis::PLAYERS; ++i) {
    if (carded_.has(i)) frame_.players[i].state |= marks_[i];
  }
  carded_ = {};
  for (bool& caught : caught_.of) caught = false;
  tellsFrame_ = true;
  return true;
}

void CoachRecording::fill(const ExactPlayer& seen) {
  if (!seen.valid || seen.team == TEAM_UNKNOWN || !isShirtNumber(seen.number)) return;
  const bool ours = seen.team == TEAM_US;
  const playing_side side = ours ? side_ : analysis::otherSide(side_);
  const int who = analysis::playerOf(side, seen.number);
  analysis::FramePlayer& player = frame_.players[who];
  const bool isGoalie = seen.goalie == GOALIE_TRUE;
  player.state = analysis::STATE_ON_FIELD | marks_[who];
  if (isGoalie) player.state |= analysis::STATE_GOALIE;
  if (isGoalie && caught_[side]) player.state |= analysis::STATE_CATCH;
  if (seen.tackle) player.state |= analysis::STATE_TACKLE;
  player.type = ours ? types_[seen.number] : analysis::NONE;
  player.pos = {seen.x, seen.y};
  player.vel = {seen.x_vel, seen.y_vel};
  player.body = toDegrees(seen.body_dir);
  player.neck = toDegrees(seen.face_dir);
}

std::string CoachRecording::remark() const {
  return damageRemark(refused_, firstRefused_, line_, cut_);
}

}  // namespace vok::gamelogs
