#include <cmath>
#include <fstream>

#include "gamelogkeeper.h"
#include "gamelogwriter.h"
#include "scanner.h"

namespace vok::practicematch {
namespace {

using analysis::Frame;
using analysis::FramePlayer;

/// As many digits as a server writes.
double rounded(double value) {
  constexpr double DIGITS = 1e4;
  return std::round(DIGITS * value) / DIGITS;
}

Vector2d rounded(const Vector2d& v) {
  return {rounded(v.x), rounded(v.y)};
}

void fill(FramePlayer& shown, const Player& p) {
  const int kicksBefore = shown.counts[analysis::COUNT_KICK];
  const bool kicked = kicksBefore != analysis::NONE && p.kicks > kicksBefore;
  shown.state = analysis::STATE_ON_FIELD;
  if (p.goalie()) shown.state |= analysis::STATE_GOALIE;
  if (kicked) shown.state |= analysis::STATE_KICK;
  if (p.tackling > 0) shown.state |= analysis::STATE_TACKLE;
  if (p.tackling > 0 && !p.tackleWorks) shown.state |= analysis::STATE_TACKLE_FAULT;
  shown.type = p.type;
  shown.pos = rounded(p.pos);
  shown.vel = rounded(p.vel);
  shown.body = rounded(p.body);
  shown.neck = rounded(p.neck);
  shown.viewQuality = 'h';
  shown.viewWidth = 90;
  shown.stamina = rounded(p.stamina);
  shown.effort = rounded(p.effort);
  shown.recovery = 1;
  shown.capacity = -1;  // as where a player's stamina can be restored without an end
  for (int& count : shown.counts) count = 0;
  shown.counts[analysis::COUNT_KICK] = p.kicks;
  shown.counts[analysis::COUNT_DASH] = p.dashes;
  shown.counts[analysis::COUNT_TURN] = p.turns;
  shown.counts[analysis::COUNT_TACKLE] = p.tackles;
}

/// The play mode of a call, which a referee's words on a goal say with the score.
std::string_view playMode(std::string_view name) {
  constexpr std::string_view GOAL = "goal_";
  return name.starts_with("goal_l_") || name.starts_with("goal_r_")
             ? name.substr(0, GOAL.size() + 1)
             : name;
}

}  // namespace

class GameLogKeeper::Files {
 public:
  bool open(const std::string& file) {
    constexpr std::string_view LOG = ".rcg";
    std::string textLog = file;
    if (textLog.ends_with(LOG)) textLog.resize(textLog.size() - LOG.size());
    game_.open(file);
    text_.open(textLog + ".rcl");
    return game_.is_open() && text_.is_open();
  }

  void begin(const Match& match) {
    gamelogs::LogHead head;
    for (const std::string& text : match.checkIn()) {
      gamelogs::ParameterList type;
      head.server.read(text, "server_param ");
      head.player.read(text, "player_param ");
      if (type.read(text, "player_type ")) head.types.push_back(type);
    }
    writer_.head(head);
    score(match);
  }

  void cycle(const Match& match, const std::vector<std::string>& texts) {
    standing_ = match.time() == frame_.cycle ? standing_ + 1 : 0;
    for (const std::string& text : texts) call(match, text);
    // A server shows nothing before a kick-off and behind the end.
    const std::string mode = match.modeName();
    frame_.cycle = static_cast<int>(match.time());
    if (match.time() == 0 || mode == "before_kick_off" || mode == "time_over") return;
    const World& world = match.state();
    frame_.ball = rounded(world.ball.pos);
    frame_.ballVel = rounded(world.ball.vel);
    for (int i = 0; i < analysis::PLAYERS; ++i) {
      const Side side = analysis::sideOf(i) == SIDE_LEFT ? Side::Left : Side::Right;
      fill(frame_.players[i], world.team(side)[analysis::shirtOf(i)]);
    }
    writer_.frame(frame_);
  }

  void command(const Match& match, std::string_view text) {
    if (text == "(done)") return;
    text_ << match.time() << ',' << standing_ << "\tRecv " << match.name(match.settings().coachSide)
          << "_Coach: ";
    for (const char c : text) text_ << (c >= ' ' && c <= '~' ? c : '?');
    text_ << '\n';
  }

  bool end() { return game_.flush() && text_.flush(); }

 private:
  void call(const Match& match, const std::string& text) {
    Scanner in(text);
    int cycle = 0;
    std::string_view name;
    if (!in.literal("(hear ") || !in.integer(cycle) || !in.literal(" referee ")) return;
    if (!in.until(')', name)) return;
    const analysis::Call call = analysis::Call::named(playMode(name), cycle);
    if (call.kind == analysis::CallKind::OTHER) return;
    writer_.call(call);
    if (call.kind == analysis::CallKind::GOAL || call.kind == analysis::CallKind::TIME_OVER) {
      score(match);
    }
  }

  void score(const Match& match) {
    analysis::Score score;
    score.cycle = static_cast<int>(match.time());
    score.names[SIDE_LEFT] = match.name(Side::Left);
    score.names[SIDE_RIGHT] = match.name(Side::Right);
    score.goals[SIDE_LEFT] = match.goals(Side::Left);
    score.goals[SIDE_RIGHT] = match.goals(Side::Right);
    writer_.score(score);
  }

  std::ofstream game_;
  std::ofstream text_;
  gamelogs::GameLogWriter writer_{game_};
  Frame frame_;  ///< the last one
  int standing_ = 0;
};

GameLogKeeper::GameLogKeeper() = default;
GameLogKeeper::~GameLogKeeper() = default;

bool GameLogKeeper::open(const std::string& file, std::string& error) {
  auto files = std::make_unique<Files>();
  if (!files->open(file)) {
    error = "cannot be written";
    return false;
  }
  files_ = std::move(files);
  return true;
}

void GameLogKeeper::begin(const Match& match) {
  if (files_) files_->begin(match);
}

void GameLogKeeper::cycle(const Match& match, const std::vector<std::string>& texts) {
  if (files_) files_->cycle(match, texts);
}

void GameLogKeeper::command(const Match& match, std::string_view text) {
  if (files_) files_->command(match, text);
}

bool GameLogKeeper::end() {
  return !files_ || files_->end();
}

}  // namespace vok::practicematch
