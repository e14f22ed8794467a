#include "setplays.h"

namespace vok::analysis {

int SetPlays::announce(const Call& call, Period period, bool withCatch) {
  SetPlay play;
  play.cycle = call.cycle;
  play.period = period;
  play.side = call.side;
  play.kind = call.kind;
  play.fromCatch = withCatch && call.kind == CallKind::FREE_KICK;
  setPlays_.push_back(play);
  stage_ = Stage::ANNOUNCED;
  open_ = false;
  return static_cast<int>(setPlays_.size()) - 1;
}

void SetPlays::decide(SetPlay& play, SetPlayOutcome outcome) {
  play.outcome = outcome;
  open_ = false;
}

/// What comes more than 100 cycles behind the taker's touching no longer matters.
bool SetPlays::decideLate(SetPlay& play, int cycle) {
  constexpr int FOLLOWED_CYCLES = 100;
  if (cycle - play.takenAt <= FOLLOWED_CYCLES) return false;
  decide(play, SetPlayOutcome::KEPT);
  return true;
}

void SetPlays::follow(SetPlay& play, const Touching& now) {
  if (!open_ || decideLate(play, now.cycle)) return;
  if (now.shot != NONE && sideOf(now.shooter) == play.side) {
    play.shot = now.shot;
    decide(play, SetPlayOutcome::SHOT);
  } else if (now.players.onlyOf(otherSide(play.side))) {
    decide(play, SetPlayOutcome::LOST);
  }
}

void SetPlays::touching(const Touching& now) {
  if (stage_ == Stage::NONE) return;
  SetPlay& play = setPlays_.back();
  if (stage_ == Stage::ANNOUNCED) {
    if (!now.isSingleOf(play.side)) {
      stage_ = Stage::NONE;
      return;
    }
    play.taker = now.player();
    play.takenAt = now.cycle;
    open_ = true;
    stage_ = Stage::TAKEN;
  } else if (stage_ == Stage::TAKEN) {
    if (now.isSingle()) play.second = now.player();
    stage_ = Stage::FOLLOWED;
  }
  follow(play, now);
}

void SetPlays::interruption(const Call& call, const Touching* last) {
  if (open_) {
    SetPlay& play = setPlays_.back();
    if (last != nullptr) follow(play, *last);
    if (open_ && !decideLate(play, call.cycle)) {
      const bool goal = call.kind == CallKind::GOAL && call.side == play.side;
      decide(play, goal ? SetPlayOutcome::GOAL : SetPlayOutcome::LOST);
    }
  }
  stage_ = Stage::NONE;
}

void SetPlays::end() {
  if (open_) decide(setPlays_.back(), SetPlayOutcome::KEPT);
  stage_ = Stage::NONE;
}

SetPlayOutcome SetPlays::outcome(const SetPlay& play, const Shots& shots) {
  if (play.outcome != SetPlayOutcome::SHOT) return play.outcome;
  const bool goal = shots.all()[static_cast<std::size_t>(play.shot)].goal;
  return goal ? SetPlayOutcome::GOAL : SetPlayOutcome::SHOT;
}

}  // namespace vok::analysis
