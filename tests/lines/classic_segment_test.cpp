#include "lines/classic_segment.h"

#include <gtest/gtest.h>

#include "tests/support/segments.h"

namespace orvandel::test {
namespace {

CLineSegment EveryFieldAnother() {
  CLineSegment s;
  s.start_x = 1;
  s.start_y = 2;
  s.end_x = 3;
  s.end_y = 4;
  s.mid_x = 5;
  s.mid_y = 6;
  s.line_angle = 7;
  s.line_offset = 8;
  s.direction = 9;
  s.gradient_direction = 10;
  s.length = 11;
  s.num_points = 12;
  s.fit_error = 13;
  s.contour_index = 14;
  return s;
}

TEST(ClassicSegment, EveryFieldHasItsPlace) {
  const LineSegment s = SegmentOf(EveryFieldAnother());
  EXPECT_EQ(s.start, (Point{1, 2}));
  EXPECT_EQ(s.end, (Point{3, 4}));
  EXPECT_EQ(s.mid, (Point{5, 6}));
  EXPECT_EQ(s.line_angle, 7);
  EXPECT_EQ(s.line_offset, 8);
  EXPECT_EQ(s.direction, 9);
  EXPECT_EQ(s.gradient_direction, 10);
  EXPECT_EQ(s.length, 11);
  EXPECT_EQ(s.num_points, 12);
  EXPECT_EQ(s.fit_error, 13);
  EXPECT_EQ(s.contour_index, 14);
}

TEST(ClassicSegment, ThereAndBackIsTheSame) {
  ExpectSameSegment(ClassicSegmentOf(SegmentOf(EveryFieldAnother())), EveryFieldAnother());
}

TEST(ClassicSegment, AnEmptyOneIsAllZeros) {
  ExpectSameSegment(ClassicSegmentOf({}), CLineSegment());
}

}  // namespace
}  // namespace orvandel::test
