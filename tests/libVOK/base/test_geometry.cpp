#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <limits>
#include <random>
#include <vector>

#include "Polygon.h"
#include "coordinates.h"
#include "pitch.h"

namespace vok {
namespace {

TEST(Angle, IsNormalisedFromMinusPiExclusiveToPi) {
  for (const double odd : {PI, -PI, 3 * PI}) EXPECT_EQ(Angle::mod2pi(odd), PI) << odd;
  EXPECT_EQ(Angle(3.0) + 0.5, 3.5 - 2 * PI);
  // It has to compile: an int or float operand was ambiguous.
  EXPECT_EQ((Angle(0.5) + 1) * 2 / 2.0F - 1L + Angle(0.5), 1);
  EXPECT_NEAR(Angle::mod2pi(-9.87e6), std::remainder(-9.87e6, 2 * PI), 1e-8);
  EXPECT_LE(std::abs(Angle::mod2pi(-1e300)), PI);
  EXPECT_EQ(Angle::mod2pi(-std::numeric_limits<double>::infinity()), 0);
  EXPECT_EQ(Angle::mod2pi(std::numeric_limits<double>::quiet_NaN()), 0);
}

TEST(Vector2d, StretchesAndTurnsCounterClockwise) {
  EXPECT_EQ(Vector2d(3, -4).stretch(10), Vector2d(6, -8));
  EXPECT_DOUBLE_EQ(Vector2d(5, 0).turn(2).getAngle(), 2);
}

TEST(Intersections, OfDegenerateShapesWriteNoSolution) {
  double a = 7, b = 7;
  Vector2d p(7, 7), q(7, 7);
  EXPECT_EQ(intersectLineCircle({0, 0}, {1, 1}, 5, a, b), Intersect::Instable);
  EXPECT_EQ(intersectLineLine({1, 2}, {0, 5}, {-2, -4}, a, b), Intersect::Instable);
  EXPECT_EQ(intersectCircleCircle(2, {0, 0}, 2, p, q), Intersect::R2larger);
  EXPECT_EQ(intersectCircleCircle(3, {0, 0}, 2, p, q), Intersect::R1larger);
  EXPECT_TRUE(a == 7 && b == 7 && p == Vector2d(7, 7) && q == p);
  EXPECT_EQ(intersectCircleCircle(5, {8, 0}, 5, p, q), Intersect::Valid);
  EXPECT_TRUE(p == Vector2d(4, 3) && q == Vector2d(4, -3));
}

TEST(Intersections, LieOnBothShapes) {
  const auto near = [](double x, double y) { return std::abs(x - y) < 1e-8; };
  std::mt19937 random(31);
  std::uniform_real_distribution<double> coordinate(-10, 10), radius(0, 10);
  for (int i = 0; i < 2000; ++i) {
    const Vector2d c(coordinate(random), coordinate(random));
    const Vector2d t(coordinate(random), coordinate(random));
    const double r1 = radius(random), r2 = radius(random), dist = c.getLength();
    Vector2d p, q;
    const Intersect found = intersectCircleCircle(r1, c, r2, p, q);
    ASSERT_EQ(found, dist > r1 + r2   ? Intersect::None
                     : dist < r1 - r2 ? Intersect::R1larger
                     : dist < r2 - r1 ? Intersect::R2larger
                                      : Intersect::Valid);
    for (const Vector2d& point : {p, q}) {
      const bool onBoth = near(point.getLength(), r1) && near((point - c).getLength(), r2);
      ASSERT_EQ(onBoth, found == Intersect::Valid) << i;
    }
    double a = 0, b = 0;
    const bool meets = std::abs(crossProduct(t, c)) <= r1 * t.getLength();
    ASSERT_EQ(intersectLineCircle(t, c, r1, a, b), meets ? Intersect::Valid : Intersect::None);
    ASSERT_LE(a, b);
    for (const double l : {a, b}) ASSERT_TRUE(!meets || near((l * t - c).getLength(), r1)) << i;
    ASSERT_EQ(intersectLineLine(t, {r1, r2}, c, a, b), Intersect::Valid) << i;
    ASSERT_LE((a * t - (Vector2d(r1, r2) + b * c)).getLength(), 1e-9 * (1 + std::abs(a))) << i;
  }
}

TEST(FieldAreas, IncludeTheBorderOfTheFieldButNotOfThePenaltyAreas) {
  EXPECT_TRUE(inField({HALF_LENGTH, HALF_WIDTH}, 0) && inField({-53, 0}, -1));
  EXPECT_FALSE(inField({0, -33.5}, 1) || inField({-52.6, 0}, 0));
  for (const Vector2d edge : {Vector2d(HALF_LENGTH, 0), Vector2d(36, 0), Vector2d(40, 20.16)}) {
    EXPECT_FALSE(inOtherPenaltyArea(edge, 0) || inOurPenaltyArea(-edge, 0)) << edge.x;
    EXPECT_TRUE(inOtherPenaltyArea(edge, -0.1) && inOurPenaltyArea(-edge, -0.1)) << edge.x;
  }
}

TEST(DistanceLimits, AllowForBothRoundings) {
  EXPECT_NEAR(upperDistLimit(10.0, 0.1), std::exp(2.35), 1e-9);  // ln 10.05 = 2.308
  EXPECT_NEAR(lowerDistLimit(10.0, 0.1), std::exp(2.25), 1e-9);  // ln 9.95 = 2.298
  EXPECT_EQ(lowerDistLimit(0.05, 0.1), 0);
  testing::internal::CaptureStderr();
  EXPECT_EQ(upperDistLimit(-0.05, 0.1), 1.0);
  EXPECT_EQ(testing::internal::GetCapturedStderr(), "Illegal quantization result from server !\n");
}

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
  for (double d = turn(random); d < 2 * PI; d += turn(random)) {
    points.push_back(centre + Vector2d(2.5, 0).turn(d));
  }
  return polygon(points);
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
    const Polygon a = roundPolygon({0, 1}, 0.8, random), b = roundPolygon({1, 0}, 1, random);
    const Vector2d point(coordinate(random), coordinate(random));
    ASSERT_EQ((a ^ b).isInside(point), a.isInside(point) && b.isInside(point)) << i;
  }
}

}  // namespace
}  // namespace vok
