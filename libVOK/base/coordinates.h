// Vectors, angles and the geometry of the field.
//
// Field frame: origin at the centre spot, x towards the opponent's goal, so that our goal line is
// at x = -HALF_LENGTH; metres (pitch.h). Directions are angles from the +x axis in radians.
#pragma once

#include <concepts>
#include <numbers>

namespace vok {

inline constexpr double PI = std::numbers::pi;

/// The server and the configuration give degrees, the library computes in radians. The results are
/// not normalised.
constexpr double toRadians(double degrees) {
  return degrees * PI / 180;
}
constexpr double toDegrees(double radians) {
  return radians * 180 / PI;
}

/// An angle in radians, always in (-pi, pi]; every operation normalises its result. The operand on
/// the right may be of any arithmetic type or an angle. With a number on the left an angle is a
/// plain double, and so is the result.
class Angle {
 public:
  Angle() = default;
  Angle(double radians) : v(mod2pi(radians)) {}

  operator double() const { return v; }

  /// The same angle in (-pi, pi]; 0 for one that is not finite.
  static double mod2pi(double radians);

  Angle operator-() const { return Angle(-v); }

  // Templates, because with a parameter of type double the built-in operators on the converted
  // angle would fit an int or float operand as well, which is ambiguous.
  template <std::convertible_to<double> Number>
  Angle operator+(Number other) const {
    return Angle(v + static_cast<double>(other));
  }
  template <std::convertible_to<double> Number>
  Angle operator-(Number other) const {
    return Angle(v - static_cast<double>(other));
  }
  template <std::convertible_to<double> Number>
  Angle operator*(Number factor) const {
    return Angle(v * static_cast<double>(factor));
  }
  template <std::convertible_to<double> Number>
  Angle operator/(Number divisor) const {
    return Angle(v / static_cast<double>(divisor));
  }
  Angle& operator+=(double other) { return *this = *this + other; }
  Angle& operator-=(double other) { return *this = *this - other; }
  Angle& operator*=(double factor) { return *this = *this * factor; }
  Angle& operator/=(double divisor) { return *this = *this / divisor; }

 private:
  double v = 0;
};

/// A point in metres or a velocity in metres per cycle.
struct Vector2d {
  double x = 0;
  double y = 0;

  Vector2d() = default;
  Vector2d(double x, double y) : x(x), y(y) {}

  double getX() const { return x; }
  double getY() const { return y; }
  void setX(double to) { x = to; }
  void setY(double to) { y = to; }
  void setXY(double toX, double toY) { *this = {toX, toY}; }

  double getLength() const;
  /// Direction in radians.
  double getAngle() const;
  void setRadAng(double length, double radians);

  bool operator==(const Vector2d&) const = default;
  Vector2d operator-() const { return {-x, -y}; }
  Vector2d operator+(const Vector2d& o) const { return {x + o.x, y + o.y}; }
  Vector2d operator-(const Vector2d& o) const { return {x - o.x, y - o.y}; }
  Vector2d operator*(double factor) const { return {x * factor, y * factor}; }
  /// Scalar product.
  double operator*(const Vector2d& o) const { return x * o.x + y * o.y; }
  Vector2d& operator+=(const Vector2d& o) { return *this = *this + o; }
  Vector2d& operator-=(const Vector2d& o) { return *this = *this - o; }
  Vector2d& operator*=(double factor) { return *this = *this * factor; }
  Vector2d& operator/=(double divisor) { return *this = {x / divisor, y / divisor}; }

  /// Scales to the given length; the zero vector stays zero.
  Vector2d& stretch(double length);
  /// Rotates counter-clockwise (from +x to +y).
  Vector2d& turn(double radians);
  /// The vector turned counter-clockwise by a quarter turn.
  Vector2d perp() const { return {-y, x}; }
};

inline Vector2d operator*(double factor, const Vector2d& v) {
  return v * factor;
}

/// The vector of a length in a direction (radians).
inline Vector2d polar(double length, double radians) {
  Vector2d v;
  v.setRadAng(length, radians);
  return v;
}

/// Positive when `b` points to the left of `a`.
inline double crossProduct(const Vector2d& a, const Vector2d& b) {
  return a.x * b.y - a.y * b.x;
}

/// How an intersection ended. Solutions are written only with `Valid`.
enum class Intersect {
  None = 0,
  Valid = 1,
  Instable = 2,  ///< degenerate: no direction, or parallel lines
  R1larger = 3,  ///< circle 2 lies inside circle 1
  R2larger = 4   ///< circle 1 lies inside circle 2, or both are the same
};

/// Points l1*t and l2*t (l1 <= l2) of the line through the origin at distance `d` from `s`.
Intersect intersectLineCircle(const Vector2d& t, const Vector2d& s, double d, double& l1,
                              double& l2);

/// Points common to the circle of radius `r1` around the origin and that of `r2` around `c2`.
/// Concentric circles count as nested.
Intersect intersectCircleCircle(double r1, const Vector2d& c2, double r2, Vector2d& l1,
                                Vector2d& l2);

/// Parameters such that l1*l1dir = l2offset + l2*l2dir.
Intersect intersectLineLine(const Vector2d& l1dir, const Vector2d& l2offset, const Vector2d& l2dir,
                            double& l1, double& l2);

/// Area tests. A positive `security` (metres) shrinks the area on every side. The field includes
/// its border, the penalty areas do not.
bool inField(const Vector2d& pos, double security);
bool inOurPenaltyArea(const Vector2d& pos, double security);
bool inOtherPenaltyArea(const Vector2d& pos, double security);

/// By repeated squaring; 1 for an exponent that is not positive.
double power(double base, int exponent);

/// Largest and smallest true distance that the server reports as `nodaDist` (one decimal) after
/// rounding the logarithm to steps of `qstep`. Metres.
double upperDistLimit(double nodaDist, double qstep);
double lowerDistLimit(double nodaDist, double qstep);

}  // namespace vok
