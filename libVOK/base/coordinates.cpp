#include "coordinates.h"

#include <cmath>
#include <iostream>

#include "pitch.h"

namespace vok {

namespace {

// Below this a squared length or a determinant counts as zero.
constexpr double DEGENERATE = 0.00001;

// Half of the last digit of a distance that the server reports with one decimal.
constexpr double HALF_DIGIT = 0.05;

}  // namespace

double Angle::mod2pi(double radians) {
  if (!std::isfinite(radians)) return 0;
  // Only far angles take the quotient: ordinary ones keep their exact bits in the loops.
  if (std::abs(radians) > 1000) radians = std::fmod(radians, 2 * PI);
  while (radians > PI) radians -= 2 * PI;
  while (radians <= -PI) radians += 2 * PI;
  return radians;
}

double Vector2d::getLength() const {
  return std::sqrt(x * x + y * y);
}

double Vector2d::getAngle() const {
  return std::atan2(y, x);
}

void Vector2d::setRadAng(double length, double radians) {
  setXY(length * std::cos(radians), length * std::sin(radians));
}

Vector2d& Vector2d::stretch(double length) {
  const double now = getLength();
  if (now > 0) *this *= length / now;
  return *this;
}

Vector2d& Vector2d::turn(double radians) {
  const double c = std::cos(radians);
  const double s = std::sin(radians);
  return *this = {x * c - y * s, x * s + y * c};
}

Intersect intersectLineCircle(const Vector2d& t, const Vector2d& s, double d, double& l1,
                              double& l2) {
  const double nrmtq = t * t;
  if (nrmtq < DEGENERATE) return Intersect::Instable;

  const double mqhalf = (t * s) / nrmtq;
  const double discriminant = mqhalf * mqhalf - (s * s - d * d) / nrmtq;
  if (discriminant < 0) return Intersect::None;

  l1 = mqhalf - std::sqrt(discriminant);
  l2 = mqhalf + std::sqrt(discriminant);
  return Intersect::Valid;
}

Intersect intersectCircleCircle(double r1, const Vector2d& c2, double r2, Vector2d& l1,
                                Vector2d& l2) {
  const double nrmc2q = c2 * c2;
  if (nrmc2q >= DEGENERATE) {
    // The common chord crosses the line of the centres at solavg * c2, h is its half squared.
    const double solavg = ((nrmc2q + r1 * r1 - r2 * r2) * 0.5) / nrmc2q;
    const double h = r1 * r1 - solavg * solavg * nrmc2q;
    if (h >= 0) {
      const double soldev = std::sqrt(h) / std::sqrt(nrmc2q);
      const Vector2d along = solavg * c2;
      const Vector2d across = soldev * Vector2d(-c2.y, c2.x);
      l1 = along + across;
      l2 = along - across;
      return Intersect::Valid;
    }
    if ((r1 + r2) * (r1 + r2) < nrmc2q) return Intersect::None;
  }
  return r1 <= r2 ? Intersect::R2larger : Intersect::R1larger;
}

Intersect intersectLineLine(const Vector2d& l1dir, const Vector2d& l2offset, const Vector2d& l2dir,
                            double& l1, double& l2) {
  const double det = crossProduct(l1dir, l2dir);
  if (std::abs(det) < DEGENERATE) return Intersect::Instable;

  l1 = crossProduct(l2offset, l2dir) / det;
  l2 = crossProduct(l2offset, l1dir) / det;
  return Intersect::Valid;
}

bool inField(const Vector2d& pos, double security) {
  return std::abs(pos.x) <= HALF_LENGTH - security && std::abs(pos.y) <= HALF_WIDTH - security;
}

bool inOurPenaltyArea(const Vector2d& pos, double security) {
  return inOtherPenaltyArea({-pos.x, pos.y}, security);
}

bool inOtherPenaltyArea(const Vector2d& pos, double security) {
  return PENALTY_AREA_X + security < pos.x && pos.x < HALF_LENGTH - security &&
         std::abs(pos.y) < PENALTY_AREA_HALF_WIDTH - security;
}

double upperDistLimit(double nodaDist, double qstep) {
  const double d = nodaDist + HALF_DIGIT;
  if (d <= 0) {
    std::cerr << "Illegal quantization result from server !\n";
    return 1.0;
  }
  // Rounding down here and up below makes the interval as wide as the two roundings allow.
  return std::exp(std::floor(std::log(d) / qstep) * qstep + 0.5 * qstep);
}

double lowerDistLimit(double nodaDist, double qstep) {
  const double d = nodaDist - HALF_DIGIT;
  if (d <= 1e-10) return 0.0;
  return std::exp(std::ceil(std::log(d) / qstep) * qstep - 0.5 * qstep);
}

double power(double base, int exponent) {
  double result = 1;
  for (; exponent > 0; exponent /= 2) {
    if (exponent % 2 == 1) result *= base;
    base *= base;
  }
  return result;
}

}  // namespace vok
