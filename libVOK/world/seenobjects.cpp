// Each view confines an object to a sector: a stretch of distances (a tenth of them long, as the
// server rounds the logarithm) in a wedge of one degree. Between the views the object moves by the
// simulator's physics. So the sectors of several views, moved on, cut out of each other what a
// single view leaves open. The changes of distance and direction do the same to the velocity. An
// object that is where it cannot be was kicked, pushed or placed: the view alone counts then.
#include "seenobjects.h"

#include <algorithm>
#include <cmath>

#include "constants.h"

namespace vok {

namespace {

constexpr double HALF_DEGREE = PI / 360;
/// The server rounds the change of distance, divided by the distance, to steps of 0.02, and the
/// change of direction to tenths of a degree.
constexpr double HALF_RATIO_STEP = 0.01;
constexpr double HALF_TURN_STEP = PI / 3600;
constexpr double NOWHERE = 40;           ///< metres: the standard deviation of a place not known
constexpr double MODEL_VARIANCE = 1e-4;  ///< square metres: curvature, and our own error
constexpr double SPEED_VARIANCE = 4e-5;  ///< of our own speed
constexpr double FARTHEST = 200;         ///< metres; what a text says beyond that is no view
constexpr double FASTEST = 10;           ///< metres per cycle; the same
constexpr double ASIDE = 0.04;           ///< standard deviation of a runner's speed across its body
constexpr double BACKWARDS = 0.1;        ///< metres per cycle that hardly anybody runs back faster
constexpr double ABOVE_TOP = 0.02;       ///< metres per cycle: the type may be a faster one

/// What is expected of an object, seen from an observer.
struct Line {
  Line(const Motion& motion, const Observer& from) {
    const Vector2d way = Vector2d(motion.mean[0], motion.mean[1]) - from.pos;
    dist = std::max(way.getLength(), 0.1);
    ahead = way.getLength() > 0.1 ? way * (1 / way.getLength()) : Vector2d(1, 0);
    aside = ahead.perp();
    direction = ahead.getAngle() - from.face;
    relative = Vector2d(motion.mean[2], motion.mean[3]) - from.v;
  }

  double dist;
  double direction;  ///< from the face
  Vector2d ahead;
  Vector2d aside;
  Vector2d relative;  ///< velocity
};

bool seePlace(Motion& motion, const SensorObject& seen, const Observer& from) {
  const Line line(motion, from);
  const double offset = Angle::mod2pi(seen.dir - line.direction) * line.dist;
  const double half = HALF_DEGREE * line.dist;
  const double variance =
      MODEL_VARIANCE + from.posVariance + from.faceVariance * line.dist * line.dist;
  if (!motion.confine({line.aside.x, line.aside.y, 0, 0}, offset - half, offset + half, variance)) {
    return false;
  }
  if (seen.dist <= 0) return true;
  const Line turned(motion, from);
  const Stretch stretch = stretchOf(seen);
  return motion.confine(
      {turned.ahead.x, turned.ahead.y, 0, 0}, stretch.middle - stretch.half - turned.dist,
      stretch.middle + stretch.half - turned.dist, MODEL_VARIANCE + from.posVariance);
}

bool seeChanges(Motion& motion, const SensorObject& seen, const Observer& from) {
  if (!seen.changes || seen.dist <= 0) return true;
  const Line line(motion, from);
  const double farther = line.dist * seen.dist_change / seen.dist - line.relative * line.ahead;
  const double round = line.dist * HALF_RATIO_STEP;
  if (!motion.confine({0, 0, line.ahead.x, line.ahead.y}, farther - round, farther + round,
                      SPEED_VARIANCE)) {
    return false;
  }
  const Line again(motion, from);
  const double aside = again.dist * seen.dir_change - again.relative * again.aside;
  const double half = again.dist * HALF_TURN_STEP;
  return motion.confine({0, 0, again.aside.x, again.aside.y}, aside - half, aside + half,
                        SPEED_VARIANCE);
}

/// Whether the place is, or is almost, in the sector that a view shows.
bool isWhereSeen(const Motion& motion, const SensorObject& seen, const Observer& from) {
  const Line line(motion, from);
  if (std::abs(Angle::mod2pi(seen.dir - line.direction)) * line.dist >
      2 * HALF_DEGREE * line.dist + 0.1) {
    return false;
  }
  if (seen.dist <= 0) return true;
  const Stretch stretch = stretchOf(seen);
  return std::abs(line.dist - stretch.middle) < 1.2 * stretch.half + 0.1;
}

void forgetVelocity(Motion& motion, const Vector2d& v, double deviation) {
  motion.mean[2] = v.x;
  motion.mean[3] = v.y;
  for (std::size_t i = 0; i < 4; ++i) {
    for (std::size_t j = 2; j < 4; ++j) motion.cov[i][j] = motion.cov[j][i] = 0;
  }
  motion.cov[2][2] = motion.cov[3][3] = deviation * deviation;
}

/// The velocity that the changes of a single view tell.
Vector2d toldVelocity(const Motion& motion, const SensorObject& seen, const Observer& from) {
  if (!seen.changes || seen.dist <= 0) return {};
  const Line line(motion, from);
  return from.v + line.ahead * (line.dist * seen.dist_change / seen.dist) +
         line.aside * (line.dist * seen.dir_change);
}

/// Puts an object where a view alone sees it.
void placeAnew(Motion& motion, const SensorObject& seen, const Observer& from,
               double speedDeviation) {
  const Line known(motion, from);
  Vector2d way;
  const Stretch stretch = seen.dist > 0 ? stretchOf(seen) : Stretch{known.dist, 0.5 * known.dist};
  way.setRadAng(stretch.middle, from.face + seen.dir);
  const double length = std::max(way.getLength(), 0.01);
  const Vector2d ahead = way * (1 / length);
  const double along = stretch.half * stretch.half / 3 + MODEL_VARIANCE;
  const double across = HALF_DEGREE * HALF_DEGREE * length * length / 3 + MODEL_VARIANCE;
  motion.mean = {from.pos.x + way.x, from.pos.y + way.y, 0, 0};
  motion.cov[0][0] = along * ahead.x * ahead.x + across * ahead.y * ahead.y;
  motion.cov[1][1] = along * ahead.y * ahead.y + across * ahead.x * ahead.x;
  motion.cov[0][1] = motion.cov[1][0] = (along - across) * ahead.x * ahead.y;
  forgetVelocity(motion, toldVelocity(motion, seen, from), speedDeviation);
}

void takeMean(WMovedObject& object, const Motion& motion) {
  object.pos = {motion.mean[0], motion.mean[1]};
  object.v = {motion.mean[2], motion.mean[3]};
}

}  // namespace

Stretch stretchOf(const SensorObject& seen) {
  const double low = lowerDistLimit(seen.dist, QUANTIZE_STEP);
  const double high = upperDistLimit(seen.dist, QUANTIZE_STEP);
  return {0.5 * (low + high), 0.5 * (high - low)};
}

void forgetMotion(Motion& motion) {
  motion.spread({NOWHERE, NOWHERE, 1, 1});
}

void drift(Motion& motion, const Drift& by) {
  Vector2d ahead;
  ahead.setRadAng(1, by.direction);
  const double along = by.unforeseen * by.unforeseen;
  const double across = by.aside * by.aside;
  const double mixed = (along - across) * ahead.x * ahead.y;
  const double alongX = along * ahead.x * ahead.x + across * ahead.y * ahead.y;
  const double alongY = along * ahead.y * ahead.y + across * ahead.x * ahead.x;
  auto& cov = motion.cov;
  for (std::size_t i = 0; i < 2; ++i) {
    for (std::size_t j = 0; j < 2; ++j) {
      const double pp = cov[i][j];
      const double pv = cov[i][j + 2];
      const double vp = cov[i + 2][j];
      const double vv = cov[i + 2][j + 2];
      const double own = i != j ? mixed : i == 0 ? alongX : alongY;
      cov[i][j] = pp + by.way * (pv + vp) + by.way * by.way * vv + own;
      cov[i][j + 2] = by.keep * (pv + by.way * vv) + by.decay * own;
      cov[i + 2][j] = by.keep * (vp + by.way * vv) + by.decay * own;
      cov[i + 2][j + 2] = by.keep * by.keep * vv + by.decay * by.decay * own;
    }
  }
  if (!(cov[0][0] + cov[1][1] < 2 * NOWHERE * NOWHERE)) forgetMotion(motion);
}

void seeObject(WMovedObject& object, Motion& motion, const SensorObject& seen, const Observer& from,
               double speedDeviation) {
  if (seen.dist > FARTHEST || std::abs(seen.dist_change) > FASTEST) return;
  motion.mean = {object.pos.x, object.pos.y, object.v.x, object.v.y};
  const bool isNew = object.age >= NEVER || motion.cov[0][0] + motion.cov[1][1] > 200;
  if (isNew || !seePlace(motion, seen, from)) placeAnew(motion, seen, from, speedDeviation);
  if (!seeChanges(motion, seen, from)) {
    forgetVelocity(motion, toldVelocity(motion, seen, from), speedDeviation);
    seeChanges(motion, seen, from);
  }
  // What the velocity tells of a place that was out of sight for long does not hold after a kick.
  if (!isWhereSeen(motion, seen, from)) placeAnew(motion, seen, from, speedDeviation);
  takeMean(object, motion);
  if (object.v.getLength() > object.vmax) object.v.stretch(object.vmax);
}

void runAhead(WPlayer& player, Motion& motion, double body, bool isNew) {
  Vector2d ahead;
  ahead.setRadAng(1, body);
  const Vector2d aside = ahead.perp();
  if (isNew) motion.observe({0, 0, aside.x, aside.y}, -(player.v * aside), ASIDE * ASIDE);
  takeMean(player, motion);
  const double forwards = player.v * ahead;
  // The speed has decayed behind the step.
  const double top = player.vmax * player.decay + ABOVE_TOP;
  motion.confine({0, 0, ahead.x, ahead.y}, -BACKWARDS - forwards, top - forwards);
  takeMean(player, motion);
}

}  // namespace vok
