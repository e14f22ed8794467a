// A convex region: where something may be, as the intersection of what is known of it.
//
// Vertices run counter-clockwise, so that the inside lies to the left of every edge; the last edge
// closes back to the first vertex. Two points closer than 1e-8 m are the same vertex. A polygon
// with less than three vertices is legal and contains nothing.
#pragma once

#include <cstddef>
#include <vector>

#include "coordinates.h"

namespace vok {

class Polygon {
 public:
  Polygon() = default;
  /// A copy of `n` points; empty after a message when they are less than three.
  Polygon(const Vector2d* pts, int n);

  int nop() const { return static_cast<int>(p.size()); }
  std::vector<Vector2d> points() const { return p; }

  void clear() { p.clear(); }
  /// Appends; refuses what is already the first or the last vertex.
  bool addPoint(Vector2d c);
  bool delPoint(int no);
  /// Inserts by direction as seen from the mean: 0 refused, 1 appended, 2 inserted. The vertices
  /// are rotated first, so that the one with the smallest direction seen from the field's origin
  /// leads.
  int insertPoint(Vector2d c);
  bool exists(Vector2d v) const;

  /// Mean of the vertices; the origin when there are none.
  Vector2d getInside() const;
  /// Largest distance from `m` to a vertex, metres.
  double getError(const Vector2d& m) const;
  double getInsideError() const { return getError(getInside()); }
  /// Points on the line from the mean to a vertex, the mean included, count as outside.
  bool isInside(Vector2d c1) const;

  /// The part of this polygon that lies in `P` as well. A polygon without vertices has no edge
  /// and cuts nothing off.
  Polygon operator^(const Polygon& P) const;
  Polygon& operator^=(const Polygon& P);

 private:
  Polygon clippedBy(const Polygon& P) const;
  Polygon leftOf(const Vector2d& from, const Vector2d& to) const;
  const Vector2d& after(std::size_t i) const { return p[i + 1 < p.size() ? i + 1 : 0]; }

  std::vector<Vector2d> p;
};

}  // namespace vok
