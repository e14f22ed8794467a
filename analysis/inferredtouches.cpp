#include "inferredtouches.h"

#include <algorithm>

namespace vok::analysis {
namespace {

/// The numbers of two places and a velocity are rounded to 0.0001.
constexpr double ROUNDING = 0.0002;

bool moved(const Frame& now, const Frame& before, double rand) {
  const Vector2d change = now.ball - before.ball - before.ballVel;
  const double noise = rand * before.ballVel.getLength() + ROUNDING;
  return std::abs(change.x) > noise || std::abs(change.y) > noise;
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
  // A ball that the referee puts somewhere lies still there.
  if (isTaken && step.now.ballVel == Vector2d()) return touches;

  int nearest = NONE;
  double least = 1;
  for (int i = 0; i < PLAYERS; ++i) {
    const FramePlayer& player = before.players[i];
    if (!player.there() || (isTaken && sideOf(i) != modeBefore.side)) continue;
    double share = kickShare(player, before.ball, rules);
    if (beginsTackle(i, step.now, &before)) {
      share = std::min(share, tackleShare(player, before.ball, rules));
    }
    if (share > least) continue;
    least = share;
    nearest = i;
  }
  if (nearest != NONE) touches.byCounter.add(nearest);
  touches.all.bits |= touches.byCounter.bits;
  return touches;
}

}  // namespace vok::analysis
