// The direction of a segment: along its line, to the side that its gradient directions tell.

#include <cmath>

#include <gtest/gtest.h>

#include "tests/lines/contour_shapes.h"

namespace orvandel::test {
namespace {

/// Direction of the segment of eleven points from the origin on, all with gradient direction g.
double DirectionOf(double step_x, double step_y, double g) {
  TestContour contour;
  AppendStraight(contour, 13, 0, 0, step_x, step_y);
  for (TestPoint& p : contour.points)
    p.g = g;
  SetAllFlags(contour, 1);
  const ContourHandle set = MakeSet({contour});
  CLineExtracter extracter = ExtracterThatKeepsFlags();
  EXPECT_EQ(extracter.Extract(set.get()), 1);
  return extracter.segments.empty() ? 0 : extracter.segments[0].direction;
}

constexpr double kAngleRounding = 1e-14;  // a few additions of numbers below 2 pi

TEST(SegmentDirection, IsAQuarterTurnBelowTheNormalWhereEdgesPointAlongIt) {
  // A horizontal line has the normal pi/2.
  EXPECT_NEAR(DirectionOf(1, 0, kQuarterTurn), 0, kAngleRounding);
  EXPECT_NEAR(DirectionOf(-1, 0, kQuarterTurn), 0, kAngleRounding);  // whichever way it is followed
}

TEST(SegmentDirection, IsAQuarterTurnAboveTheNormalWhereEdgesPointAgainstIt) {
  // pi/2 + pi/2 = pi is brought into [-pi, pi).
  EXPECT_NEAR(DirectionOf(1, 0, -kQuarterTurn), -kHalfTurn, kAngleRounding);
}

TEST(SegmentDirection, OfVerticalLines) {
  // The fitted angle of a vertical line is pi/2, its normal 0.
  EXPECT_NEAR(DirectionOf(0, 1, 0), -kQuarterTurn, kAngleRounding);
  EXPECT_NEAR(DirectionOf(0, 1, -kHalfTurn), kQuarterTurn, kAngleRounding);
}

TEST(SegmentDirection, OfDiagonalLines) {
  // Down to the right: fitted angle pi/4, normal pi/4.
  EXPECT_NEAR(DirectionOf(1, 1, kQuarterTurn / 2), -kQuarterTurn / 2, kAngleRounding);
  EXPECT_NEAR(DirectionOf(1, 1, kQuarterTurn / 2 - kHalfTurn), 1.5 * kQuarterTurn, kAngleRounding);
  // Up to the right: fitted angle -pi/4, normal 3 pi/4; 5 pi/4 is brought into [-pi, pi).
  EXPECT_NEAR(DirectionOf(1, -1, 1.5 * kQuarterTurn), kQuarterTurn / 2, kAngleRounding);
  EXPECT_NEAR(DirectionOf(1, -1, -kQuarterTurn / 2), -1.5 * kQuarterTurn, kAngleRounding);
}

TEST(SegmentDirection, StaysInItsRangeForEveryLine) {
  for (int degrees = 0; degrees < 360; degrees += 5) {
    const double a = degrees * kHalfTurn / 180;
    for (int g = -180; g <= 360; g += 7) {
      const double direction = DirectionOf(std::cos(a), std::sin(a), g * kHalfTurn / 180);
      EXPECT_GE(direction, -kHalfTurn) << degrees << ' ' << g;
      EXPECT_LT(direction, kHalfTurn) << degrees << ' ' << g;
    }
  }
}

TEST(SegmentDirection, TurnsOverWhereNormalAndEdgesAreAChordOf765ThousandthsApart) {
  // 2 asin(0.765 / 2) = 0.78497 radians, a little less than 45 degrees.
  const double threshold = 2 * std::asin(0.765 / 2);
  for (const double side : {-1.0, 1.0}) {
    EXPECT_NEAR(DirectionOf(1, 0, kQuarterTurn + side * (threshold - 1e-6)), 0, kAngleRounding);
    EXPECT_NEAR(DirectionOf(1, 0, kQuarterTurn + side * (threshold + 1e-6)), -kHalfTurn,
                kAngleRounding);
    EXPECT_NEAR(DirectionOf(1, 0, kQuarterTurn + side * kQuarterTurn / 2), -kHalfTurn,
                kAngleRounding)
        << "exactly 45 degrees";
  }
}

TEST(SegmentDirection, EdgesAcrossTheLineTurnItToo) {
  EXPECT_NEAR(DirectionOf(1, 0, 0), -kHalfTurn, kAngleRounding);
  EXPECT_NEAR(DirectionOf(0, 1, kQuarterTurn), kQuarterTurn, kAngleRounding);
}

TEST(SegmentDirection, IsNotANumberWithoutEdgeDirections) {
  // Such a chord is not at the threshold, so the direction is the normal less a quarter turn.
  const double nan = std::nan("");
  EXPECT_NEAR(DirectionOf(1, 0, nan), 0, kAngleRounding);
}

}  // namespace
}  // namespace orvandel::test
