#include "Polygon.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <numbers>
#include <random>
#include <vector>

namespace vok {
namespace {

using Points = std::vector<Vector2d>;

Polygon polygon(const Points& points) {
  return {points.data(), static_cast<int>(points.size())};
}

Polygon square(double x, double y) {
  return polygon({{x - 1, y - 1}, {x + 1, y - 1}, {x + 1, y + 1}, {x - 1, y + 1}});
}

/// Points on a circle, `step` radians apart on the average.
Polygon roundPolygon(Vector2d centre, double step, std::mt19937& random) {
  std::uniform_real_distribution<double> turn(0, 2 * step);
  Points points;
  for (double d = turn(random); d < 2 * std::numbers::pi; d += turn(random)) {
    points.push_back(centre + Vector2d(2.5, 0).turn(d));
  }
  return polygon(points);
}

/// How far a point lies inside; negative outside.
double depth(const Polygon& polygon, Vector2d point) {
  const Points p = polygon.points();
  double least = p.size() < 3 ? -1 : 1000;
  for (std::size_t i = 0; i < p.size(); ++i) {
    const Vector2d edge = p[(i + 1) % p.size()] - p[i];
    least = std::min(least, crossProduct(edge, point - p[i]) / edge.getLength());
  }
  return least;
}

TEST(Polygon, RefusesTooFewDoubledAndMissingVertices) {
  testing::internal::CaptureStderr();
  EXPECT_EQ(polygon({{0, 0}, {3, 0}}).nop(), 0);
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "Polygon::Polygon 2 are to less points for a polygon\n");
  Polygon p = polygon({{0, 0}, {3, 0}, {0, 3}});
  EXPECT_DOUBLE_EQ(p.getInsideError(), std::sqrt(5.0));  // from (1, 1) to (3, 0)
  EXPECT_FALSE(p.addPoint({0, 1e-9}) || p.addPoint({0, 3}) || p.delPoint(3) || p.delPoint(-1));
  EXPECT_TRUE(p.addPoint({-2, 1}) && p.delPoint(1));
  EXPECT_EQ(p.points(), Points({{0, 0}, {0, 3}, {-2, 1}}));
}

TEST(Polygon, InsertsByDirection) {
  Polygon p = polygon({{1, 1}, {-1, 1}, {-1, -1}, {1, -1}});
  EXPECT_EQ(p.insertPoint({1, 1}), 0);
  EXPECT_EQ(p.insertPoint({2, 0}), 2);
  EXPECT_EQ(p.insertPoint({-2, 0.5}), 1);
  EXPECT_EQ(p.points(), Points({{-1, -1}, {1, -1}, {2, 0}, {1, 1}, {-1, 1}, {-2, 0.5}}));
}

TEST(Polygon, ExcludesTheSpokesFromItsInside) {
  const Polygon p = square(3, 1);
  EXPECT_TRUE(p.isInside({3.5, 1.2}) && p.isInside({2, 1.5}) && p.isInside({3.2, 0.1}));
  EXPECT_FALSE(p.isInside({3, 1}) || p.isInside({3.5, 1.5}) || p.isInside({3.3, 2.01}));
  EXPECT_FALSE(Polygon().isInside({0, 0}));
}

TEST(Polygon, ClippedHoldsExactlyWhatBothHold) {
  const Polygon p = square(0, 0);
  EXPECT_EQ((p ^ square(3, 0)).nop(), 0);
  EXPECT_EQ((p ^ Polygon()).points(), p.points());
  std::mt19937 random(37);
  std::uniform_real_distribution<double> coordinate(-3, 3);
  for (int i = 0; i < 10000; ++i) {
    Polygon a = roundPolygon({0, 1}, 0.8, random);
    const Polygon b = roundPolygon({1, 0}, 1, random);
    const Vector2d point(coordinate(random), coordinate(random));
    const double expected = std::min(depth(a, point), depth(b, point));
    if (std::abs(expected) < 1e-6) continue;  // on a border either answer is right
    ASSERT_EQ(depth(a ^= b, point) > 0, expected > 0) << i << ": " << point.x << " " << point.y;
  }
}

TEST(Polygon, OfAnySizeIsClippedAndOneOperatorComplains) {
  std::mt19937 random(38);
  const Polygon large = roundPolygon({0, 0}, 0.005, random);
  testing::internal::CaptureStderr();
  EXPECT_EQ((Polygon(large) ^= square(1, 1)).points(), (large ^ square(1, 1)).points());
  EXPECT_EQ(testing::internal::GetCapturedStderr(),
            "Polygon::operator^(): To many points use opeartor^=() instead\n");
}

}  // namespace
}  // namespace vok
