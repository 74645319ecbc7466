// The extracter as an object: its parameters, its lifetime, and what an extraction leaves behind.

#include "orvandel/classic/line_extracter.h"

#include <memory>
#include <vector>

#include <gtest/gtest.h>

#include "tests/lines/contour_shapes.h"
#include "tests/support/segments.h"

namespace orvandel::test {
namespace {

TEST(LineExtracter, Defaults) {
  const CLineExtracter extracter;
  EXPECT_EQ(extracter.max_deviation, 0.25);
  EXPECT_EQ(extracter.neighbour_offset, 3);
  EXPECT_EQ(extracter.max_fit_error, 1.0);
  EXPECT_EQ(extracter.min_points, 4);
  EXPECT_EQ(extracter.max_join_angle, 0.017453292519943295);
  EXPECT_TRUE(extracter.segments.empty());
  EXPECT_TRUE(extracter.spare_text.empty());
}

TEST(LineExtracter, EmptySetGivesNoSegment) {
  CLineExtracter extracter;
  EXPECT_EQ(extracter.Extract(MakeEmptySet().get()), 0);
  EXPECT_EQ(extracter.Extract(MakeSet({}).get()), 0);
  EXPECT_TRUE(extracter.segments.empty());
}

TEST(LineExtracter, SetWithoutArraysGivesNoSegmentWhateverItsCountsSay) {
  const ContourHandle set = MakeEmptySet();  // as a load that ran out of memory leaves it
  Fields(set).contour_count = 3;
  Fields(set).point_count = 30;
  CLineExtracter extracter;
  EXPECT_EQ(extracter.Extract(set.get()), 0);
}

TEST(LineExtracter, GetSegmentsIsTheArrayItself) {
  CLineExtracter extracter;
  EXPECT_EQ(&extracter.GetSegments(), &extracter.segments);
}

TEST(LineExtracter, ResultIsTheNumberOfSegments) {
  const ContourHandle set = MakeSet({HorizontalContour(20, 0), HorizontalContour(20, 9)});
  CLineExtracter extracter;
  EXPECT_EQ(extracter.Extract(set.get()), 2);
  EXPECT_EQ(extracter.GetSegments().size(), 2U);
}

TEST(LineExtracter, ExtractionReplacesTheEarlierResult) {
  CLineExtracter extracter;
  extracter.Extract(MakeSet({HorizontalContour(20, 0), HorizontalContour(20, 9)}).get());
  EXPECT_EQ(extracter.Extract(MakeSet({HorizontalContour(30, 4)}).get()), 1);
  ASSERT_EQ(extracter.segments.size(), 1U);
  EXPECT_EQ(extracter.segments[0].start_y, 4.0);
  EXPECT_EQ(extracter.Extract(MakeEmptySet().get()), 0);
  EXPECT_TRUE(extracter.segments.empty());
}

TEST(LineExtracter, MarksStayInTheSet) {
  // Points 3..16 of 20 are straight; the set counts a flag of 1 as inactive.
  const ContourHandle set = MakeSet({HorizontalContour(20, 0)});
  CLineExtracter extracter;
  extracter.Extract(set.get());
  std::vector<int> expected(20, 0);
  for (std::size_t i = 3; i <= 16; ++i)
    expected[i] = 1;
  EXPECT_EQ(FlagsOf(set), expected);
  EXPECT_EQ(ctd_contour_active_point_count(set.get(), 0), 6);
}

TEST(LineExtracter, EveryContourIsMarkedByItsOwnClosedFlag) {
  TestContour closed = HorizontalContour(7, 0);
  closed.closed = true;
  const ContourHandle set = MakeSet({HorizontalContour(7, 0), closed, HorizontalContour(6, 0)});
  CLineExtracter extracter;
  extracter.Extract(set.get());
  EXPECT_EQ(FlagsOf(set, 0), (std::vector<int>{0, 0, 0, 1, 0, 0, 0}));
  EXPECT_EQ(FlagsOf(set, 1), (std::vector<int>{1, 1, 1, 1, 1, 1, 1}));
  EXPECT_EQ(FlagsOf(set, 2), (std::vector<int>{0, 0, 0, 0, 0, 0}));
}

TEST(LineExtracter, ReadsContoursThroughTheirRecords) {
  // Sorting moves the records alone: contour 0 then starts behind contour 1.
  const ContourHandle set = MakeSet({HorizontalContour(20, 1), HorizontalContour(30, 2)});
  ctd_sort(set.get(), 1);
  CLineExtracter extracter;
  ASSERT_EQ(extracter.Extract(set.get()), 2);
  EXPECT_EQ(extracter.segments[0].contour_index, 0);
  EXPECT_EQ(extracter.segments[0].start_y, 2.0);
  EXPECT_EQ(extracter.segments[1].contour_index, 1);
  EXPECT_EQ(extracter.segments[1].start_y, 1.0);
}

TEST(LineExtracter, TwoExtractionsInSuccessionAgree) {
  TestContour open = SquareFromMiddleOfSide();
  open.closed = false;
  SetAllFlags(open, 1);
  const ContourHandle set = MakeSet({SquareFromMiddleOfSide(), open, HorizontalContour(6, 3)});
  CLineExtracter extracter;
  extracter.Extract(set.get());
  const std::vector<CLineSegment> first = extracter.segments;
  const std::vector<int> flags = FlagsOf(set, 1);
  extracter.Extract(set.get());
  ExpectSameSegments(extracter.segments, first);
  EXPECT_EQ(FlagsOf(set, 1), flags);
}

/// An extracter with a value of its own in every member, and one segment.
CLineExtracter Distinct() {
  CLineExtracter extracter;
  extracter.Extract(MakeSet({HorizontalContour(20, 4)}).get());
  extracter.max_deviation = 1;
  extracter.neighbour_offset = 2;
  extracter.max_fit_error = 3;
  extracter.min_points = 5;
  extracter.max_join_angle = 6;
  extracter.spare_number = 7;
  extracter.spare_text = "eight";
  return extracter;
}

void ExpectDistinct(const CLineExtracter& extracter) {
  EXPECT_EQ(extracter.max_deviation, 1);
  EXPECT_EQ(extracter.neighbour_offset, 2);
  EXPECT_EQ(extracter.max_fit_error, 3);
  EXPECT_EQ(extracter.min_points, 5);
  EXPECT_EQ(extracter.max_join_angle, 6);
  EXPECT_EQ(extracter.spare_number, 7);
  EXPECT_EQ(extracter.spare_text, "eight");
  ASSERT_EQ(extracter.segments.size(), 1U);
  EXPECT_EQ(extracter.segments[0].start_y, 4.0);
}

TEST(LineExtracter, CopyTakesEveryMember) {
  const CLineExtracter source = Distinct();
  ExpectDistinct(CLineExtracter(source));
}

TEST(LineExtracter, AssignmentTakesEveryMember) {
  CLineExtracter target;
  target.Extract(MakeSet({HorizontalContour(20, 0), HorizontalContour(20, 9)}).get());
  target = Distinct();
  ExpectDistinct(target);
}

TEST(LineExtracter, AssignmentToItselfKeepsEveryMember) {
  CLineExtracter extracter = Distinct();
  const CLineExtracter& same = extracter;
  extracter = same;
  ExpectDistinct(extracter);
}

TEST(LineExtracter, CopyHasSegmentsOfItsOwn) {
  auto source = std::make_unique<CLineExtracter>(Distinct());
  CLineExtracter copy(*source);
  source->segments[0].start_y = 99;
  source.reset();
  ExpectDistinct(copy);
}

TEST(LineExtracter, SegmentsOutliveTheSet) {
  CLineExtracter extracter;
  ContourHandle set = MakeSet({HorizontalContour(20, 4)});
  extracter.Extract(set.get());
  set.reset();
  EXPECT_EQ(extracter.GetSegments()[0].end_x, 16.0);
}

}  // namespace
}  // namespace orvandel::test
