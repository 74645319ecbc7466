// The function behind the extracter: what its options mean, and what it leaves behind.

#include "lines/line_extraction.h"

#include <gtest/gtest.h>

#include "tests/lines/contour_shapes.h"

namespace orvandel::test {
namespace {

/// An L: 20 points along y = 5, then 14 down along x = 20.
TestContour Corner() {
  TestContour contour;
  AppendStraight(contour, 20, 0, 5, 1, 0);
  AppendStraight(contour, 14, 20, 5, 0, 1);
  return contour;
}

TEST(LineExtraction, ACornerParts) {
  const ContourSet contours = MakeContours({Corner()});
  const auto segments = ExtractSegments(contours.View(), {});
  ASSERT_EQ(segments.size(), 2u);
  // The leg with more points first. A chord reaches 3 points to either side: that is what the corner costs
  // each leg, and what an end costs. The last two points before the end have their chord to the start.
  EXPECT_EQ(segments[0].start, (Point{3, 5}));
  EXPECT_EQ(segments[0].end, (Point{17, 5}));
  EXPECT_NEAR(segments[0].line_angle, 0.0, 1e-12);
  EXPECT_NEAR(segments[0].line_offset, 5.0, 1e-12);
  EXPECT_EQ(segments[1].end, (Point{20, 13}));
  EXPECT_EQ(segments[1].mid.x, 20.0);
  EXPECT_GT(segments[0].num_points, segments[1].num_points);
}

TEST(LineExtraction, FlagsTellTheStraightPoints) {
  const ContourSet contours = MakeContours({Corner()});
  ExtractSegments(contours.View(), {});
  const auto flags = contours.View().f;
  EXPECT_EQ(flags[2], 0u);  // without a neighbour three points before
  EXPECT_EQ(flags[10], 1u);
  EXPECT_EQ(flags[20], 0u);  // the corner itself lies far from the chord
  EXPECT_EQ(flags[28], 1u);
}

TEST(LineExtraction, NoMorePointsThanTheLeastAreDropped) {
  const ContourSet contours = MakeContours({Corner()});
  const auto all = ExtractSegments(contours.View(), {});
  ASSERT_EQ(all.size(), 2u);
  LineOptions options;
  options.min_points = all[1].num_points;
  EXPECT_EQ(ExtractSegments(contours.View(), options).size(), 1u);
  options.min_points = all[1].num_points - 1;
  EXPECT_EQ(ExtractSegments(contours.View(), options).size(), 2u);
}

TEST(LineExtraction, ALargeDeviationTakesTheCornerForStraight) {
  const ContourSet contours = MakeContours({Corner()});
  LineOptions options;
  options.max_deviation = 3.0;  // the corner lies 2.1 pixels from its chord, no point more than 2.9
  options.max_fit_error = 10.0;  // and far from the line through both legs
  EXPECT_EQ(ExtractSegments(contours.View(), options).size(), 1u);
}

TEST(LineExtraction, SegmentsTellTheirContour) {
  const ContourSet contours = MakeContours({HorizontalContour(12, 1), HorizontalContour(30, 8)});
  const auto segments = ExtractSegments(contours.View(), {});
  ASSERT_EQ(segments.size(), 2u);
  EXPECT_EQ(segments[0].contour_index, 1);
  EXPECT_EQ(segments[1].contour_index, 0);
  EXPECT_DOUBLE_EQ(segments[0].line_offset, 8.0);
}

TEST(LineExtraction, NoContoursGiveNoSegments) {
  EXPECT_TRUE(ExtractSegments({}, {}).empty());
  EXPECT_TRUE(ExtractSegments(MakeContours({}).View(), {}).empty());
  EXPECT_TRUE(ExtractSegments(MakeContours({TestContour{}}).View(), {}).empty());
}

}  // namespace
}  // namespace orvandel::test
