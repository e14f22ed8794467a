#include <gtest/gtest.h>

#include <cmath>
#include <random>
#include <vector>

#include "Polygon.h"
#include "coordinates.h"
#include "pitch.h"
#include "support/server.h"

namespace vok {
namespace {

TEST(Angle, IsNormalisedFromMinusPiExclusiveToPi) {
  for (const double odd : {PI, -PI, 3 * PI}) EXPECT_EQ(Angle::mod2pi(odd), PI) << odd;
  // It has to compile: an int or float operand was ambiguous.
  EXPECT_EQ((Angle(0.5) + 1) * 2 / 2.0F - 1L + Angle(0.5), 1);
  EXPECT_NEAR(Angle::mod2pi(-1e300), std::remainder(-1e300, 2 * PI), 1e-8);
  EXPECT_EQ(Angle::mod2pi(-HUGE_VAL), 0);
}

TEST(Intersections, OfDegenerateShapesAreToldApart) {
  double a = 0, b = 0;
  Vector2d p, q;
  EXPECT_EQ(intersectLineCircle({0, 0}, {1, 1}, 5, a, b), Intersect::Instable);
  EXPECT_EQ(intersectLineLine({1, 2}, {0, 5}, {-2, -4}, a, b), Intersect::Instable);
  EXPECT_EQ(intersectCircleCircle(2, {0, 0}, 2, p, q), Intersect::R2larger);
  EXPECT_EQ(intersectCircleCircle(3, {8, 0}, 5, p, q), Intersect::Valid) << "they touch";
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
  EXPECT_FALSE(inOtherPenaltyArea({36, 0}, 0) || inOurPenaltyArea({-40, 20.16}, 0));
  EXPECT_TRUE(inOtherPenaltyArea({36, 0}, -0.1) && inOurPenaltyArea({-40, 20.16}, -0.1));
}

// The world's tests hold the distances of seen players.
TEST(DistanceLimits, OfNoDistanceAreFinite) {
  const test::StderrCapture errors;
  EXPECT_EQ(lowerDistLimit(0.05, 0.1), 0);
  EXPECT_EQ(upperDistLimit(-0.05, 0.1), 1.0);
}

const Vector2d SQUARE[] = {{1, 1}, {-1, 1}, {-1, -1}, {1, -1}};

TEST(Polygon, RefusesDoubledVerticesAndInsertsByDirection) {
  Polygon p(SQUARE, 4);
  EXPECT_FALSE(p.addPoint({1, 1 + 1e-9}) || p.addPoint({1, -1}) || p.delPoint(4) || p.delPoint(-1));
  EXPECT_EQ(p.insertPoint({1, 1}), 0);
  EXPECT_EQ(p.insertPoint({2, 0}), 2);
  EXPECT_EQ(p.insertPoint({-2, 0.5}), 1);
  const std::vector<Vector2d> all = {{-1, -1}, {1, -1}, {2, 0}, {1, 1}, {-1, 1}, {-2, 0.5}};
  EXPECT_EQ(p.points(), all);
  EXPECT_DOUBLE_EQ(p.getError({1, 1}), std::sqrt(9.25));
}

TEST(Polygon, ExcludesTheSpokesFromItsInside) {
  const Polygon p(SQUARE, 4);
  EXPECT_TRUE(p.isInside({0.5, 0.2}) && p.isInside({-1, 0.5}) && p.isInside({0.2, -0.9}));
  EXPECT_FALSE(p.isInside({0, 0}) || p.isInside({0.5, 0.5}) || p.isInside({0.3, 1.01}));
}

Polygon regularPolygon(Vector2d centre, int corners, double direction) {
  std::vector<Vector2d> points;
  for (int i = 0; i < corners; ++i)
    points.push_back(centre + Vector2d(2.5, 0).turn(direction + i * 2 * PI / corners));
  return {points.data(), corners};
}

TEST(Polygon, ClippedHoldsExactlyWhatBothHold) {
  std::mt19937 random(37);
  std::uniform_real_distribution<double> coordinate(-3, 3);
  for (int i = 0; i < 10000; ++i) {
    const Polygon a = regularPolygon({0, 1}, 3 + i % 5, coordinate(random));
    const Polygon b = regularPolygon({1, 0}, 3 + i % 4, coordinate(random));
    const Vector2d point(coordinate(random), coordinate(random));
    ASSERT_EQ((a ^ b).isInside(point), a.isInside(point) && b.isInside(point)) << i;
  }
}

}  // namespace
}  // namespace vok
