#include "orvandel/classic/line_segment.h"

#include <type_traits>

#include <gtest/gtest.h>

#include "tests/support/segments.h"

namespace orvandel::test {
namespace {

CLineSegment SegmentOf(int num_points) {
  CLineSegment segment;
  segment.num_points = num_points;
  return segment;
}

/// A different value in every field.
CLineSegment Distinct() {
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
  s.spare = 11;
  s.length = 12;
  s.num_points = 13;
  s.fit_error = 14;
  s.contour_index = 15;
  return s;
}

TEST(LineSegment, EveryFieldIsZeroAtFirst) {
  const CLineSegment s;
  for (const double field :
       {s.start_x, s.start_y, s.end_x, s.end_y, s.mid_x, s.mid_y, s.line_angle, s.line_offset,
        s.direction, s.gradient_direction, s.spare, s.length, s.fit_error})
    EXPECT_TRUE(SameBits(field, 0.0));
  EXPECT_EQ(s.num_points, 0);
  EXPECT_EQ(s.contour_index, 0);
}

TEST(LineSegment, CopyAndAssignmentTakeEveryField) {
  const CLineSegment source = Distinct();
  const CLineSegment copy(source);
  ExpectSameSegment(copy, Distinct());
  CLineSegment assigned = SegmentOf(99);
  assigned = source;
  ExpectSameSegment(assigned, Distinct());
}

TEST(LineSegment, AssignmentToItselfKeepsEveryField) {
  CLineSegment segment = Distinct();
  const CLineSegment& same = segment;
  segment = same;
  ExpectSameSegment(segment, Distinct());
}

TEST(LineSegment, IsPolymorphicByItsDestructorAlone) {
  EXPECT_TRUE(std::has_virtual_destructor_v<CLineSegment>);
}

TEST(MorePoints, ComparesCountsAndLetsEqualOnesPass) {
  EXPECT_TRUE(MorePoints(SegmentOf(11), SegmentOf(10)));
  EXPECT_TRUE(MorePoints(SegmentOf(10), SegmentOf(10)));
  EXPECT_FALSE(MorePoints(SegmentOf(9), SegmentOf(10)));
}

TEST(MorePoints, LooksAtNothingButTheCount) {
  CLineSegment longer = SegmentOf(9);
  longer.length = 1000;
  longer.fit_error = 0.9;
  longer.contour_index = -1;
  EXPECT_FALSE(MorePoints(longer, SegmentOf(10)));
  EXPECT_TRUE(MorePoints(SegmentOf(10), longer));
}

}  // namespace
}  // namespace orvandel::test
