// The fields that a run of points gives its segment.

#include <cmath>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "tests/lines/contour_shapes.h"

namespace orvandel::test {
namespace {

constexpr double kDirectionRounding = 1e-14;  // sums of ten sines and cosines

/// The segments of one contour whose points are all flagged; the last point takes no part.
std::vector<CLineSegment> SegmentsOf(TestContour contour,
                                     CLineExtracter extracter = ExtracterThatKeepsFlags()) {
  SetAllFlags(contour, 1);
  const ContourHandle set = MakeSet({contour});
  extracter.Extract(set.get());
  return extracter.segments;
}

CLineSegment OnlySegmentOf(const TestContour& contour) {
  const std::vector<CLineSegment> segments = SegmentsOf(contour);
  EXPECT_EQ(segments.size(), 1U);
  return segments.empty() ? CLineSegment() : segments[0];
}

TEST(SegmentFit, HorizontalRun) {
  const CLineSegment s = OnlySegmentOf(HorizontalContour(20, 5));
  EXPECT_EQ(s.start_x, 0.0);
  EXPECT_EQ(s.start_y, 5.0);
  EXPECT_EQ(s.end_x, 18.0);
  EXPECT_EQ(s.end_y, 5.0);
  EXPECT_EQ(s.mid_x, 9.0);
  EXPECT_EQ(s.mid_y, 5.0);
  EXPECT_EQ(s.line_angle, 0.0);
  EXPECT_EQ(s.line_offset, 5.0);
  EXPECT_EQ(s.length, 18.0);
  EXPECT_EQ(s.num_points, 18);
  EXPECT_EQ(s.fit_error, 0.0);
  EXPECT_EQ(s.contour_index, 0);
  EXPECT_EQ(s.spare, 0.0);
}

TEST(SegmentFit, DiagonalRunOfThreeFourFive) {
  TestContour contour;
  AppendStraight(contour, 12, 10, 20, 3, 4);
  const CLineSegment s = OnlySegmentOf(contour);  // points 0..10
  EXPECT_EQ(s.length, 50.0);
  EXPECT_EQ(s.mid_x, 25.0);
  EXPECT_EQ(s.mid_y, 40.0);
  // A few roundings of numbers below 64.
  EXPECT_NEAR(s.line_angle, std::atan2(4, 3), 1e-14);
  EXPECT_NEAR(s.line_offset, 20 * 0.6 - 10 * 0.8, 1e-13);
  EXPECT_NEAR(s.fit_error, 0, 1e-13);
}

TEST(SegmentFit, ContourIndexIsThatOfTheSource) {
  const ContourHandle set =
      MakeSet({HorizontalContour(3, 0), ContourOfSegment(9, 1), ContourOfSegment(8, 2)});
  CLineExtracter extracter = ExtracterThatKeepsFlags();
  ASSERT_EQ(extracter.Extract(set.get()), 2);
  EXPECT_EQ(extracter.segments[0].contour_index, 1);
  EXPECT_EQ(extracter.segments[1].contour_index, 2);
}

TEST(SegmentFit, EndPointIsLeftOutOfLineErrorAndGradientDirection) {
  TestContour contour = HorizontalContour(12, 5);
  TestPoint& end = contour.points[10];
  end.y = 105;
  end.g = -kQuarterTurn / 2;
  const CLineSegment s = OnlySegmentOf(contour);
  EXPECT_EQ(s.line_angle, 0.0);
  EXPECT_EQ(s.line_offset, 5.0);
  EXPECT_EQ(s.fit_error, 0.0);
  EXPECT_EQ(s.num_points, 10);
  EXPECT_NEAR(s.gradient_direction, kQuarterTurn, kDirectionRounding);
  EXPECT_EQ(s.end_x, 10.0);  // yet it is where the segment ends
  EXPECT_EQ(s.end_y, 105.0);
  EXPECT_EQ(s.mid_y, 55.0);
  EXPECT_EQ(s.length, std::hypot(-10.0, -100.0));
}

TEST(SegmentFit, PointBehindTheRunIsNeverLookedAt) {
  TestContour contour = HorizontalContour(12, 5);
  const double nan = std::numeric_limits<double>::quiet_NaN();
  contour.points[11] = {nan, nan, nan};
  const CLineSegment s = OnlySegmentOf(contour);
  EXPECT_EQ(s.fit_error, 0.0);
  EXPECT_EQ(s.length, 10.0);
}

/// Points at x = 0, 1, 2, ... and y = +d, -d, -d, +d, +d, -d, -d, +d, ...: this has no slope, so
/// the fitted line is y = 0 and every point lies d from it. Eight of them are fitted.
TestContour ZigZag(double d) {
  TestContour contour = HorizontalContour(10, d);
  for (const std::size_t i : {1U, 2U, 5U, 6U, 9U})
    contour.points[i].y = -d;
  return contour;
}

TEST(SegmentFit, FitErrorIsRootMeanSquareDistance) {
  const CLineSegment s = OnlySegmentOf(ZigZag(0.5));
  EXPECT_EQ(s.line_angle, 0.0);
  EXPECT_EQ(s.line_offset, 0.0);
  EXPECT_EQ(s.num_points, 8);
  EXPECT_EQ(s.fit_error, 0.5);
}

TEST(SegmentFit, FitErrorOfOnePixelIsTooMuch) {
  EXPECT_EQ(SegmentsOf(ZigZag(1.0)).size(), 0U);
  EXPECT_EQ(SegmentsOf(ZigZag(0.999)).size(), 1U);
}

TEST(SegmentFit, FitErrorMustStayBelowTheExtractersLimit) {
  CLineExtracter extracter = ExtracterThatKeepsFlags();
  extracter.max_fit_error = 0.5;
  EXPECT_EQ(SegmentsOf(ZigZag(0.5), extracter).size(), 0U);
  extracter.max_fit_error = std::nextafter(0.5, 1.0);
  EXPECT_EQ(SegmentsOf(ZigZag(0.5), extracter).size(), 1U);
}

TEST(SegmentFit, FitErrorThatIsNotANumberIsNotAtTheLimit) {
  // Only "at or above the limit" drops a run, and not-a-number is neither.
  TestContour contour = HorizontalContour(12, 5);
  contour.points[4].y = std::numeric_limits<double>::quiet_NaN();
  const std::vector<CLineSegment> segments = SegmentsOf(contour);
  ASSERT_EQ(segments.size(), 1U);
  EXPECT_TRUE(std::isnan(segments[0].fit_error));
}

/// A horizontal contour whose ten fitted points have these gradient directions in turn.
double GradientDirectionOf(double first, double second) {
  TestContour contour = HorizontalContour(12, 5);
  for (std::size_t i = 0; i < contour.points.size(); ++i)
    contour.points[i].g = i % 2 == 0 ? first : second;
  return OnlySegmentOf(contour).gradient_direction;
}

TEST(SegmentFit, GradientDirectionIsTheCircularMean) {
  EXPECT_NEAR(GradientDirectionOf(1.0, 1.4), 1.2, kDirectionRounding);
  EXPECT_NEAR(GradientDirectionOf(0.2, 2 * kHalfTurn - 0.2), 0, kDirectionRounding);  // across 0
}

TEST(SegmentFit, GradientDirectionsBeyondHalfATurnComeOutNegative) {
  EXPECT_NEAR(GradientDirectionOf(1.5 * kHalfTurn, 1.5 * kHalfTurn), -kQuarterTurn,
              kDirectionRounding);
}

}  // namespace
}  // namespace orvandel::test
