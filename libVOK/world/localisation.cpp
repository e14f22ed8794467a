// A view usually refines what is known from the views before, moved on by what the body senses:
// each rounded direction and distance confines the place to an interval, one after the other. When
// too many of them contradict the place, the observer is somewhere else (it was moved, or pushed),
// and the place is fitted from this view alone.
#include "localisation.h"

#include <algorithm>
#include <cmath>

#include "constants.h"
#include "landmarks.h"
#include "pitch.h"

namespace vok {

namespace {

/// Directions are rounded to whole degrees.
constexpr double HALF_DEGREE = PI / 360;
/// What the linear picture of an interval may be wrong by.
constexpr double MODEL_VARIANCE_DIST = 0.004 * 0.004;
constexpr double MODEL_VARIANCE_DIR = 0.0004 * 0.0004;
/// A landmark nearer than this has a direction that says nothing.
constexpr double TOO_NEAR = 0.3;

/// How far beyond its interval a landmark may be seen after a doubt, metres.
constexpr double SLACK = 0.1;
constexpr int FIT_ROUNDS = 3;
/// Nothing on the pitch is farther away, metres.
constexpr double FARTHEST = 200;
/// Cosine of the greatest angle from straight at a line at which it is taken over: beyond, a degree
/// is many metres.
constexpr double LEAST_COSINE = 0.2;
/// Square metres: with a greater variance the place is not known; metres: its deviation then.
constexpr double LOST = 1e4;
constexpr double NOWHERE = 50;

/// A landmark as it should be seen from a place (x, y, body), and how that changes with the place.
struct Sighting {
  Sighting(const SeenLandmark& mark, const std::array<double, 3>& from, double neck) {
    if (mark.isLine) {
      lookAtLine(mark, from, neck);
      return;
    }
    const Vector2d way = mark.pos - Vector2d(from[0], from[1]);
    dist = way.getLength();
    if (dist < TOO_NEAR) return;
    const double x = way.x / dist;
    const double y = way.y / dist;
    perDistance = {-x, -y, 0};
    perDirection = {y / dist, -x / dist, -1};
    dirOffset = Angle::mod2pi(mark.dir - way.getAngle() + from[2] + neck);
  }

  void lookAtLine(const SeenLandmark& mark, const std::array<double, 3>& from, double neck) {
    const Vector2d straight = mark.pos * (1 / mark.pos.getLength());
    const double aside = Angle::mod2pi(from[2] + neck - straight.getAngle());
    const double cosine = std::cos(aside);
    if (cosine < LEAST_COSINE) return;
    dist = (mark.pos - Vector2d(from[0], from[1])) * straight / cosine;
    perDistance = {-straight.x / cosine, -straight.y / cosine, dist * std::tan(aside)};
    perDirection = {0, 0, 1};
    dirOffset = Angle::mod2pi(mark.dir - aside);
  }

  double dist = 0;       ///< less than `TOO_NEAR` when the landmark tells nothing from there
  double dirOffset = 0;  ///< radians: the direction that was told, less the expected one
  std::array<double, 3> perDistance{};
  std::array<double, 3> perDirection{};
};

}  // namespace

SeenLandmarks::SeenLandmarks(const SensorData& view, playing_side side)
    : sign_(side == SIDE_RIGHT ? -1 : 1) {
  for (std::size_t i = 0; i < view.flag.size(); ++i) add(view.flag[i], flag_x[i], flag_y[i]);
  for (std::size_t i = 0; i < view.goal.size(); ++i) add(view.goal[i], goal_x[i], goal_y[i]);
  // The place should be known well before a line is taken over: it is far from linear.
  const auto valid = [](const SensorLine& line) { return line.valid; };
  const bool isInside = std::count_if(view.line.begin(), view.line.end(), valid) == 1;
  if (isInside) addLine(*std::find_if(view.line.begin(), view.line.end(), valid));
}

/// The view tells the angle between face direction and line, up to a right angle, with the sign of
/// the side to which the face is turned.
void SeenLandmarks::addLine(const SensorLine& seen) {
  Vector2d middle;
  if (seen.which == LINE_LEFT || seen.which == LINE_RIGHT) {
    middle.x = seen.which == LINE_LEFT ? -HALF_LENGTH : HALF_LENGTH;
  } else {
    middle.y = seen.which == LINE_TOP ? -HALF_WIDTH : HALF_WIDTH;
  }
  SensorObject straight = seen;
  straight.dir = std::copysign(PI / 2, seen.dir) - seen.dir;
  const std::size_t before = count_;
  add(straight, middle.x, middle.y);
  if (count_ > before) marks_[before].isLine = true;
}

void SeenLandmarks::add(const SensorObject& seen, double x, double y) {
  if (!seen.valid || seen.dist > FARTHEST) return;
  SeenLandmark& mark = marks_[count_++];
  mark.pos = {sign_ * x, sign_ * y};
  mark.dir = seen.dir;
  mark.low = mark.high = NO_DISTANCE;
  if (seen.dist <= 0) return;
  mark.low = lowerDistLimit(seen.dist, QUANTIZE_STEP_L);
  mark.high = upperDistLimit(seen.dist, QUANTIZE_STEP_L);
}

double Localisation::error() const {
  return std::sqrt(std::max(0.0, state_.cov[0][0] + state_.cov[1][1]));
}

void Localisation::set(Vector2d pos, double body) {
  state_.mean = {pos.x, pos.y, body};
}

void Localisation::blur(double metres, double radians) {
  state_.cov[0][0] += metres * metres;
  state_.cov[1][1] += metres * metres;
  state_.cov[2][2] += radians * radians;
  boundError();
}

void Localisation::boundError() {
  for (std::size_t i = 0; i < 3; ++i) {
    if (state_.cov[i][i] < LOST) continue;
    state_.spread({NOWHERE, NOWHERE, PI});
    known_ = false;
    return;
  }
}

void Localisation::walk(Vector2d way, double along, double across) {
  // The way depends on the body direction: its error becomes one of the place, and tied to it.
  const Vector2d perDirection = way.perp();
  auto& cov = state_.cov;
  const std::array<double, 2> withBody = {cov[0][2], cov[1][2]};
  const std::array<double, 2> step = {perDirection.x, perDirection.y};
  for (std::size_t i = 0; i < 2; ++i) {
    for (std::size_t j = 0; j < 2; ++j) {
      cov[i][j] += step[i] * withBody[j] + withBody[i] * step[j] + step[i] * step[j] * cov[2][2];
    }
  }
  for (std::size_t i = 0; i < 2; ++i) cov[i][2] = cov[2][i] = withBody[i] + step[i] * cov[2][2];

  const double length = way.getLength();
  const Vector2d ahead = length > 0 ? way * (1 / length) : Vector2d(1, 0);
  const double a = along * along;
  const double b = across * across;
  cov[0][0] += a * ahead.x * ahead.x + b * ahead.y * ahead.y;
  cov[1][1] += a * ahead.y * ahead.y + b * ahead.x * ahead.x;
  cov[0][1] += (a - b) * ahead.x * ahead.y;
  cov[1][0] = cov[0][1];
  state_.mean[0] += way.x;
  state_.mean[1] += way.y;
  boundError();
}

bool Localisation::look(std::span<const SeenLandmark> marks, double neck) {
  // From what is known; or as if it had been pushed unfelt; or turned farther than it knew.
  struct Doubt {
    double metres;
    double radians;
  };
  constexpr std::array<Doubt, 3> DOUBTS = {{{0, 0}, {0.15, 0.02}, {0.6, 0.2}}};
  for (const Doubt& doubt : DOUBTS) {
    if (!known_) break;
    Localisation refined = *this;
    refined.blur(doubt.metres, doubt.radians);
    if (!refined.refine(marks, neck, 0)) continue;
    if (doubt.metres > 0 && !refined.agrees(marks, neck)) continue;
    *this = refined;
    return true;
  }
  return fit(marks, neck);
}

bool Localisation::refine(std::span<const SeenLandmark> marks, double neck, int tolerated) {
  int contradictions = 0;
  for (const SeenLandmark& mark : marks) {
    const Sighting sight(mark, state_.mean, neck);
    if (sight.dist < TOO_NEAR) continue;
    bool fits = state_.confine(sight.perDirection, sight.dirOffset - HALF_DEGREE,
                               sight.dirOffset + HALF_DEGREE, MODEL_VARIANCE_DIR);
    if (mark.high > 0) {
      fits &= state_.confine(sight.perDistance, mark.low - sight.dist, mark.high - sight.dist,
                             MODEL_VARIANCE_DIST);
    }
    if (!fits && ++contradictions > tolerated) return false;
  }
  state_.mean[2] = Angle::mod2pi(state_.mean[2]);
  return true;
}

/// Whether all landmarks are seen where they must be, or almost: with much doubt the first of them
/// may lead astray.
bool Localisation::agrees(std::span<const SeenLandmark> marks, double neck) const {
  return std::all_of(marks.begin(), marks.end(), [&](const SeenLandmark& mark) {
    const Sighting sight(mark, state_.mean, neck);
    if (sight.dist < TOO_NEAR) return true;
    if (std::abs(sight.dirOffset) > HALF_DEGREE + SLACK / sight.dist) return false;
    return mark.high <= 0 || (mark.low - SLACK < sight.dist && sight.dist < mark.high + SLACK);
  });
}

void Localisation::approach(std::span<const SeenLandmark> marks, double neck) {
  const std::array<double, 3> from = state_.mean;
  for (const SeenLandmark& mark : marks) {
    const Sighting sight(mark, from, neck);
    if (sight.dist < TOO_NEAR) continue;
    const auto moved = [&](const std::array<double, 3>& weights) {
      double sum = 0;
      for (std::size_t i = 0; i < 3; ++i) sum += weights[i] * (state_.mean[i] - from[i]);
      return sum;
    };
    state_.observe(sight.perDirection, sight.dirOffset - moved(sight.perDirection),
                   HALF_DEGREE * HALF_DEGREE / 3);
    if (mark.high <= 0) continue;
    const double half = 0.5 * (mark.high - mark.low);
    const double offset = mark.low + half - sight.dist;
    state_.observe(sight.perDistance, offset - moved(sight.perDistance), half * half / 3);
  }
}

/// Turns and shifts the landmarks as seen onto the landmarks as they stand, in one step, weighted
/// by the errors of their distances; then refines from there.
bool Localisation::fit(std::span<const SeenLandmark> marks, double neck) {
  double weights = 0;
  Vector2d meanSeen;
  Vector2d meanPlace;
  int count = 0;
  const auto weightOf = [](const SeenLandmark& mark) {
    const double error = 0.5 * (mark.high - mark.low) + 0.3 * HALF_DEGREE * mark.high;
    return 1 / (error * error);
  };
  const auto seenAt = [](const SeenLandmark& mark) {
    Vector2d at;
    at.setRadAng(0.5 * (mark.low + mark.high), mark.dir);
    return at;
  };
  for (const SeenLandmark& mark : marks) {
    if (mark.high <= 0 || mark.isLine) continue;
    ++count;
    const double weight = weightOf(mark);
    weights += weight;
    meanSeen += weight * seenAt(mark);
    meanPlace += weight * mark.pos;
  }
  if (count < 2) return false;
  meanSeen /= weights;
  meanPlace /= weights;
  double along = 0;
  double across = 0;
  for (const SeenLandmark& mark : marks) {
    if (mark.high <= 0 || mark.isLine) continue;
    const Vector2d seen = seenAt(mark) - meanSeen;
    const Vector2d place = mark.pos - meanPlace;
    along += weightOf(mark) * (seen * place);
    across += weightOf(mark) * crossProduct(seen, place);
  }
  const double face = std::atan2(across, along);
  set(meanPlace - Vector2d(meanSeen).turn(face), face - neck);
  for (int round = 0; round < FIT_ROUNDS; ++round) {
    state_.spread({5, 5, 1});
    approach(marks, neck);
  }
  state_.mean[2] = Angle::mod2pi(state_.mean[2]);
  known_ = true;
  return true;
}

}  // namespace vok
