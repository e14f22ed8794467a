#include "matchanalysis.h"

#include <algorithm>

#include "inferredtouches.h"

namespace vok::analysis {

void MatchAnalysis::start(const MatchRules& rules) {
  constexpr std::size_t ROOM = 512;
  constexpr std::size_t TOUCHINGS = 8192;
  *this = MatchAnalysis();
  rules_ = rules;
  shots.reserve();
  goals.reserve();
  passes.reserve();
  dribbles.reserve();
  recoveries.reserve();
  entries.reserve();
  setPlays.reserve();
  presences.reserve();
  silences.reserve();
  shootOut.reserve();
  touchings.reserve(TOUCHINGS);
  faults.reserve(ROOM);
  offsides.reserve(ROOM);
  pending_.reserve(ROOM);
  for (const playing_side side : BOTH_SIDES) goalies_[side] = playerOf(side, FIRST_SHIRT);
}

void MatchAnalysis::call(const Call& call) {
  pending_.push_back(call);
}

void MatchAnalysis::seeGoalies(const Frame& frame) {
  for (int i = 0; i < PLAYERS; ++i) {
    if (frame.players[i].is(STATE_GOALIE)) goalies_[sideOf(i)] = i;
  }
}

/// What was announced before the shoot-out, behind the last frame of the match proper.
void MatchAnalysis::announceUpToShootOut() {
  const auto isSetup = [](const Call& call) { return call.kind == CallKind::PENALTY_SETUP; };
  const auto setup = std::find_if(pending_.begin(), pending_.end(), isSetup);
  if (shootOut.begun() || setup == pending_.end()) return;
  for (auto call = pending_.begin(); call != setup; ++call) announce(*call, call->cycle, false);
  pending_.erase(pending_.begin(), setup);
  shootOut.announce(pending_.front());
  pending_.erase(pending_.begin());
}

void MatchAnalysis::frame(const Frame& frame) {
  announceUpToShootOut();
  seeGoalies(frame);
  if (shootOut.begun()) {
    // The frame with which the first kick is announced is before that kick's first touch.
    const bool isFirst = shootOut.kicks().size() == 1 && !inShootOut_;
    if (!isFirst) shootOut.frame(countedTouches(frame, hasBefore_ ? &before_ : nullptr));
    inShootOut_ = true;
    for (Call& call : pending_) {
      call.cycle = frame.cycle;
      shootOut.announce(call);
    }
  } else {
    play(frame);
  }
  pending_.clear();
  before_ = frame;
  hasBefore_ = true;
}

void MatchAnalysis::play(const Frame& frame) {
  const bool playBefore = mode_.isPlay();
  const Call modeBefore = mode_;
  if (!pending_.empty()) mode_ = pending_.back();
  const Step step{frame, hasBefore_ ? &before_ : nullptr, mode_.isPlay(), playBefore,
                  periodOf(frame.cycle, rules_)};
  lastCycle_ = frame.cycle;
  if (!step.standing()) cycles_.in(step.period, [](int& n) { ++n; });

  const Touches touches = frame.counted ? countedTouches(frame, step.before)
                                        : inferredTouches(step, modeBefore, rules_);
  inferred_ = inferred_ || !frame.counted;
  actions.frame(step, touches);
  if (step.next() && !touches.all.empty()) touching(step, touches.all);
  for (const Call& call : pending_) announce(call, frame.cycle, !touches.byCatch.empty());

  possession.frame(step);
  entries.frame(step);
  distances.frame(step);
  staminas.frame(step, rules_);
  presences.frame(step);
  silences.frame(step);
  if (!step.cycleOfPlay()) return;
  formations.cycle(step, possession.holder());
  shapes.cycle(step, possession.holder());
  territory.cycle(step);
}

void MatchAnalysis::touching(const Step& step, PlayerSet players) {
  Touching now;
  now.cycle = step.now.cycle;
  now.period = step.period;
  now.players = players;
  now.place = step.before->ball;
  now.inPlay = step.play && step.playBefore;
  shots.touching(now, step.now, rules_);
  touchings.push_back(now);

  const Touching* const before = stretch_.last();
  possession.touching(now);
  passes.touching(before, now);
  dribbles.touching(before, now);
  setPlays.touching(now);
  const bool isRecovery = recoveries.touching(before, now);
  stretch_.add(now, isRecovery);
}

/// `cycle` is that of the frame with which the call comes.
void MatchAnalysis::announce(const Call& announced, int cycle, bool withCatch) {
  if (announced.isPlay()) return;
  Call call = announced;
  call.cycle = cycle;
  const Period period = periodOf(cycle, rules_);
  if (call.isFault()) faults.push_back(call);
  if (call.kind == CallKind::OFFSIDE) offsides.push_back(call);
  interrupt(call, period);
  if (call.isSetPlay()) stretch_.setPlay = setPlays.announce(call, period, withCatch);
}

void MatchAnalysis::interrupt(const Call& call, Period period) {
  if (call.kind == CallKind::GOAL) goals.announce(call.cycle, period, call.side, stretch_, shots);
  passes.interruption(stretch_.last(), call);
  dribbles.endRun();
  setPlays.interruption(call, stretch_.last());
  shots.interruption();
  stretch_ = {};
}

void MatchAnalysis::end() {
  announceUpToShootOut();
  for (const Call& call : pending_) {
    if (shootOut.begun()) {
      shootOut.announce(call);
    } else {
      announce(call, call.cycle, false);
    }
  }
  pending_.clear();
  dribbles.endRun();
  setPlays.end();
  shootOut.end(score_);
}

void analyse(MatchSource& source, MatchAnalysis& match) {
  bool started = false;
  for (Told told = source.next(); told != Told::END; told = source.next()) {
    if (!started) match.start(source.rules());
    started = true;
    if (told == Told::FRAME) match.frame(source.frame());
    if (told == Told::CALL) match.call(source.call());
    if (told == Told::SCORE) match.score(source.score());
  }
  if (!started) match.start(source.rules());
  match.end();
}

}  // namespace vok::analysis
