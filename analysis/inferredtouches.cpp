#include "inferredtouches.h"

#include <algorithm>

namespace vok::analysis {
namespace {

/// The numbers of two places and a velocity are rounded to 0.0001.
constexpr double ROUNDING = 0.0002;

/// What a collision leaves of a velocity.
constexpr double AFTER_COLLISION = -0.1;

/// Who is farther from the ball, as a share of the reach, has often let it pass: a program that
/// does not see exactly rarely kicks there.
constexpr double KICKED_UP_TO = 0.9;

bool isWithin(const Vector2d& difference, double bound) {
  return std::abs(difference.x) <= bound && std::abs(difference.y) <= bound;
}

bool moved(const Frame& now, const Frame& before, double rand) {
  const Vector2d change = now.ball - before.ball - before.ballVel;
  return !isWithin(change, rand * before.ballVel.getLength() + ROUNDING);
}

/// The ball hit somebody, and the velocity from before is all that it had then: nobody kicked it.
bool collidedOnly(const Frame& now, const Frame& before, const MatchRules& rules) {
  const Vector2d way = now.ball - before.ball;
  if (isWithin(now.ballVel - way * rules.ballDecay, ROUNDING)) return false;
  const double left = AFTER_COLLISION * rules.ballDecay;
  const double noise = rules.ballRand * before.ballVel.getLength();
  return isWithin(now.ballVel * (1 / left) - before.ballVel, noise + ROUNDING / std::abs(left));
}

/// A cycle has one command for the body: who turned, dashed or lies from a tackle did not kick.
bool didSomethingElse(const FramePlayer& now, const FramePlayer& before, const MatchRules& rules) {
  constexpr double TURNED = 0.002;  // degrees
  if (now.is(STATE_TACKLE) || std::abs(now.body - before.body) > TURNED) return true;
  const Vector2d way = now.pos - before.pos;
  const bool collided = way.x * now.vel.x + way.y * now.vel.y < 0;
  const double noise = rules.playerRand * before.vel.getLength() + ROUNDING;
  return !collided && !isWithin(way - before.vel, noise);
}

const TypeRules& typeOf(const FramePlayer& player, const MatchRules& rules) {
  static const TypeRules DEFAULT;
  const auto known = std::find_if(rules.types.begin(), rules.types.end(), [&](const TypeRules& t) {
    return t.id == std::max(player.type, 0);
  });
  return known == rules.types.end() ? DEFAULT : *known;
}

/// How far the ball is, as a share of what a kick reaches.
double kickShare(const FramePlayer& player, const Vector2d& ball, const MatchRules& rules) {
  const TypeRules& type = typeOf(player, rules);
  return distance(player.pos, ball) / (type.playerSize + rules.ballSize + type.kickableMargin);
}

/// Likewise for a tackle, which reaches forwards.
double tackleShare(const FramePlayer& player, const Vector2d& ball, const MatchRules& rules) {
  Vector2d away = ball - player.pos;
  away.turn(-toRadians(player.body));
  const double length = away.x >= 0 ? rules.tackleDist : rules.tackleBackDist;
  if (!(length > 0)) return 2;
  return std::max(std::abs(away.x) / length, std::abs(away.y) / rules.tackleWidth);
}

/// The nearest of some players in terms of their own reach.
struct Nearest {
  int player = NONE;
  double share = 1;

  void offer(int who, double itsShare) {
    if (itsShare > share) return;
    player = who;
    share = itsShare;
  }
};

}  // namespace

bool beginsTackle(int player, const Frame& now, const Frame* before) {
  return before != nullptr && now.players[player].is(STATE_TACKLE) &&
         !before->players[player].is(STATE_TACKLE);
}

Touches inferredTouches(const Step& step, const Call& modeBefore, const MatchRules& rules) {
  Touches touches = countedTouches(step.now, step.before);  // the catches
  const bool inPlay = step.play && step.playBefore;
  const bool isTaken = modeBefore.isSetPlay() && step.next();
  if (!step.next() || !(inPlay || isTaken)) return touches;
  const Frame& before = *step.before;
  if (!moved(step.now, before, rules.ballRand)) return touches;
  if (collidedOnly(step.now, before, rules)) return touches;
  // A ball that the referee puts somewhere lies still there.
  if (isTaken && step.now.ballVel == Vector2d()) return touches;

  BySide<Nearest> kickers;
  Nearest idle;
  Nearest any;
  for (int i = 0; i < PLAYERS; ++i) {
    const FramePlayer& player = before.players[i];
    if (!player.there() || (isTaken && sideOf(i) != modeBefore.side)) continue;
    const bool tackles = beginsTackle(i, step.now, &before);
    double share = kickShare(player, before.ball, rules);
    if (tackles) share = std::min(share, tackleShare(player, before.ball, rules));
    any.offer(i, share);
    if (!tackles && didSomethingElse(step.now.players[i], player, rules)) continue;
    idle.offer(i, share);
    if (!tackles && share <= KICKED_UP_TO) kickers[sideOf(i)].offer(i, share);
  }
  for (const Nearest& kicker : kickers.of) {
    if (kicker.player != NONE) touches.byCounter.add(kicker.player);
  }
  const Nearest& other = idle.player != NONE ? idle : any;
  if (touches.byCounter.empty() && other.player != NONE) touches.byCounter.add(other.player);
  touches.all.bits |= touches.byCounter.bits;
  return touches;
}

}  // namespace vok::analysis
