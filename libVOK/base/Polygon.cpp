#include "Polygon.h"

#include <algorithm>
#include <cstddef>
#include <iostream>

namespace vok {

namespace {

constexpr double SAME_POINT_DIST_SQ = 1e-16;  // squared metres
constexpr double EDGE_TOLERANCE = 1e-8;
constexpr int MAX_POINTS = 1023;  // beyond that operator^ asks for operator^=

bool samePoint(const Vector2d& a, const Vector2d& b) {
  return (a - b) * (a - b) <= SAME_POINT_DIST_SQ;
}

bool isLeftOf(const Vector2d& from, const Vector2d& to, const Vector2d& point) {
  return crossProduct(to - from, point - from) >= -EDGE_TOLERANCE;
}

/// Inside the triangle of the origin, `a` and `b`, its two sides at the origin excluded. For a
/// triangle without area the quotients are infinite or no numbers, and nothing is inside.
bool inTriangle(const Vector2d& a, const Vector2d& b, const Vector2d& point) {
  const double area = crossProduct(a, b);
  const double alongA = crossProduct(point, b) / area;
  const double alongB = crossProduct(a, point) / area;
  return alongA > 0 && alongB > 0 && alongA + alongB <= 1;
}

}  // namespace

Polygon::Polygon(const Vector2d* pts, int n) {
  if (n < 3) {
    std::cerr << "Polygon::Polygon " << n << " are to less points for a polygon\n";
    return;
  }
  p.assign(pts, pts + n);
}

bool Polygon::addPoint(Vector2d c) {
  if (!p.empty() && (samePoint(c, p.back()) || samePoint(c, p.front()))) return false;
  p.push_back(c);
  return true;
}

bool Polygon::delPoint(int no) {
  if (no < 0 || no >= nop()) return false;
  p.erase(p.begin() + no);
  return true;
}

int Polygon::insertPoint(Vector2d c) {
  const Vector2d m = getInside();
  const auto direction = [](const Vector2d& v) { return v.getAngle(); };
  std::rotate(p.begin(), std::ranges::min_element(p, {}, direction), p.end());

  const auto directionFromMean = [m](const Vector2d& v) {
    return Angle::mod2pi((v - m).getAngle());
  };
  const auto next = std::ranges::find_if(
      p, [&](const Vector2d& v) { return directionFromMean(v) >= directionFromMean(c); });
  if (next == p.end()) {
    p.push_back(c);
    return 1;
  }
  if (samePoint(*next, c)) return 0;
  p.insert(next, c);
  return 2;
}

bool Polygon::exists(Vector2d v) const {
  return std::ranges::any_of(p, [v](const Vector2d& vertex) { return samePoint(vertex, v); });
}

Vector2d Polygon::getInside() const {
  if (p.empty()) return {};
  Vector2d sum;
  for (const Vector2d& vertex : p) sum += vertex;
  return sum /= nop();
}

double Polygon::getError(const Vector2d& m) const {
  double largest = 0;
  for (const Vector2d& vertex : p) largest = std::max(largest, (vertex - m).getLength());
  return largest;
}

bool Polygon::isInside(Vector2d c1) const {
  const Vector2d m = getInside();
  for (std::size_t i = 0; i < p.size(); ++i) {
    if (inTriangle(p[i] - m, after(i) - m, c1 - m)) return true;
  }
  return false;
}

Polygon Polygon::operator^(const Polygon& P) const {
  if (nop() > MAX_POINTS) {
    std::cerr << "Polygon::operator^(): To many points use opeartor^=() instead\n";
  }
  return clippedBy(P);
}

Polygon& Polygon::operator^=(const Polygon& P) {
  return *this = clippedBy(P);
}

/// Clips by one edge of `P` after the other (Sutherland and Hodgman).
Polygon Polygon::clippedBy(const Polygon& P) const {
  Polygon result = *this;
  for (std::size_t j = 0; j < P.p.size(); ++j) result = result.leftOf(P.p[j], P.after(j));
  return result;
}

/// What lies to the left of the line through two points or on it.
Polygon Polygon::leftOf(const Vector2d& from, const Vector2d& to) const {
  Polygon result;
  for (std::size_t i = 0; i < p.size(); ++i) {
    const bool inside = isLeftOf(from, to, p[i]);
    if (inside) result.addPoint(p[i]);
    if (inside == isLeftOf(from, to, after(i))) continue;

    const Vector2d side = after(i) - p[i];
    const double det = crossProduct(to - from, side);
    if (det == 0) continue;
    // Within the tolerance of the edge the line may miss the side.
    const double crossing = crossProduct(to - from, from - p[i]) / det;
    if (crossing >= 0 && crossing <= 1) result.addPoint(p[i] + side * crossing);
  }
  return result;
}

}  // namespace vok
