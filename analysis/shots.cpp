#include "shots.h"

namespace vok::analysis {
namespace {

constexpr double LONGEST_SHOT = 40;    // metres
constexpr double BESIDE_THE_POST = 2;  // metres
constexpr double LEAST_WAY = 0.5;      // metres, in the cycle of the crossing
constexpr int WAYS = 25;               // cycles, that of the touching included

struct Crossing {
  bool found = false;
  double y = 0;
  double way = 0;  ///< metres in that cycle, what lies behind the line included
};

/// Where the ball crosses the goal line at x = 52.5, all in the shooter's own frame.
Crossing crossing(Vector2d from, Vector2d to, Vector2d vel, double decay) {
  for (int way = 0; way < WAYS; ++way) {
    if (from.x < HALF_LENGTH && to.x >= HALF_LENGTH) {
      const double part = (HALF_LENGTH - from.x) / (to.x - from.x);
      return {true, from.y + (to.y - from.y) * part, distance(from, to)};
    }
    from = to;
    to = from + vel;
    vel = vel * decay;
  }
  return {};
}

}  // namespace

void Shots::touching(Touching& now, const Frame& after, const MatchRules& rules) {
  if (open_ != NONE) shots_[static_cast<std::size_t>(open_)].next = now.players;
  open_ = NONE;
  if (!now.isSingle()) return;

  const playing_side side = sideOf(now.player());
  const Vector2d from = ownFrame(now.place, side);
  if (!(from.x < HALF_LENGTH) || !(distance(from, {HALF_LENGTH, 0}) <= LONGEST_SHOT)) return;
  const Crossing at =
      crossing(from, ownFrame(after.ball, side), ownFrame(after.ballVel, side), rules.ballDecay);
  const double post = rules.goalWidth / 2;
  if (!at.found || !(std::abs(at.y) < post + BESIDE_THE_POST) || !(at.way >= LEAST_WAY)) return;

  now.shot = open_ = static_cast<int>(shots_.size());
  now.shooter = now.player();
  shots_.push_back(
      {now.cycle, now.period, now.player(), now.place, std::abs(at.y) < post, false, {}});
}

void Shots::scored(int shot) {
  Shot& goal = shots_[static_cast<std::size_t>(shot)];
  goal.goal = goal.onTarget = true;
}

void Shots::scoredBy(Touching& last, int player) {
  if (last.shot == NONE) {
    last.shot = static_cast<int>(shots_.size());
    last.shooter = player;
    shots_.push_back({last.cycle, last.period, player, last.place, true, true, {}});
  }
  scored(last.shot);
}

ShotOutcome Shots::outcome(const Shot& shot, const BySide<int>& goalies) {
  const playing_side other = otherSide(shot.side());
  if (shot.goal) return ShotOutcome::GOAL;
  if (!shot.onTarget) return ShotOutcome::OFF_TARGET;
  if (shot.next.has(goalies[other])) return ShotOutcome::SAVED;
  return shot.next.of(other).empty() ? ShotOutcome::OTHER : ShotOutcome::BLOCKED;
}

}  // namespace vok::analysis
