#include "cli/shape_outline.h"

#include <cmath>
#include <cstddef>
#include <vector>

#include <gtest/gtest.h>

#include "base/rounding.h"

namespace orvandel::cli::test {
namespace {

shape::EdgePoint PointOfDisc(double angle, double radius) {
  const Point outward = {std::cos(angle), std::sin(angle)};
  return {radius * outward, outward, 10};
}

double LengthOf(const Polyline& stroke) {
  const Point step = stroke.points[1] - stroke.points[0];
  return std::hypot(step.x, step.y);
}

TEST(ShapeOutline, PointsOfACircleBecomeTheRing) {
  constexpr int kNumPoints = 60;
  constexpr double kRadius = 20;
  std::vector<shape::EdgePoint> points;
  // Out of order, as a shape holds them.
  for (int i = 0; i < kNumPoints; ++i)
    points.push_back(PointOfDisc(kTwoPi * ((7 * i) % kNumPoints) / kNumPoints, kRadius));
  const std::vector<Polyline> strokes = JoinedPoints(shape::ToArrays(points));
  ASSERT_EQ(strokes.size(), static_cast<std::size_t>(kNumPoints));
  double total = 0;
  for (const Polyline& stroke : strokes)
    total += LengthOf(stroke);
  EXPECT_NEAR(total, kNumPoints * 2 * kRadius * std::sin(kPi / kNumPoints), 1e-3);  // the polygon
}

TEST(ShapeOutline, ParallelEdgesAreNotJoined) {
  std::vector<shape::EdgePoint> points;
  for (int i = 0; i < 20; ++i) {
    points.push_back({{static_cast<double>(i), 0}, {0, 1}, 10});
    points.push_back({{static_cast<double>(i), 1.5}, {0, -1}, 10});
  }
  for (const Polyline& stroke : JoinedPoints(shape::ToArrays(points)))
    EXPECT_EQ(stroke.points[0].y, stroke.points[1].y);
}

TEST(ShapeOutline, APointAloneIsADash) {
  const std::vector<Polyline> strokes = JoinedPoints(shape::ToArrays({{{3, 4}, {1, 0}, 10}}));
  ASSERT_EQ(strokes.size(), 1u);
  EXPECT_EQ(strokes[0].points[0].x, 3);
  EXPECT_LT(strokes[0].points[0].y, 4);
  EXPECT_GT(strokes[0].points[1].y, 4);
}

}  // namespace
}  // namespace orvandel::cli::test
