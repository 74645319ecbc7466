// The last and the first segment of a closed contour become one where they continue each other.

#include <cmath>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "platform/mvtools_i.h"
#include "tests/lines/contour_shapes.h"
#include "tests/support/segments.h"

namespace orvandel::test {
namespace {

std::vector<CLineSegment> Extracted(const std::vector<TestContour>& contours,
                                    CLineExtracter extracter) {
  const ContourSet set = MakeSet(contours);
  extracter.Extract(set.get());
  return extracter.segments;
}

TEST(SegmentJoin, SquareThatBeginsInTheMiddleOfASideHasFourSegments) {
  // The five points about each corner are bent; the sides between are 23..57, 63..97 and 103..137.
  // The pieces of the first side are 143..158 (15 points) and 0..17 (17 points).
  const std::vector<CLineSegment> s = Extracted({SquareFromMiddleOfSide()}, CLineExtracter());
  ASSERT_EQ(s.size(), 4U);
  for (std::size_t i = 0; i < 3; ++i) {
    EXPECT_EQ(s[i].num_points, 34);
    EXPECT_EQ(s[i].length, 34.0);
  }
  EXPECT_EQ(s[0].mid_x, 0.0);   // left side, found last
  EXPECT_EQ(s[1].mid_y, 40.0);  // lower side
  EXPECT_EQ(s[2].mid_x, 40.0);  // right side

  const CLineSegment& joined = s[3];
  EXPECT_EQ(joined.num_points, 15 + 17);
  EXPECT_EQ(joined.start_x, 3.0);
  EXPECT_EQ(joined.start_y, 0.0);
  EXPECT_EQ(joined.end_x, 37.0);
  EXPECT_EQ(joined.end_y, 0.0);
  EXPECT_EQ(joined.mid_x, 20.0);
  EXPECT_EQ(joined.mid_y, 0.0);
  EXPECT_EQ(joined.line_angle, 0.0);
  EXPECT_EQ(joined.line_offset, 0.0);
  EXPECT_EQ(joined.fit_error, 0.0);
  EXPECT_EQ(joined.contour_index, 0);
}

TEST(SegmentJoin, JoinedSegmentHasNoLengthAndNoDirections) {
  const std::vector<CLineSegment> s = Extracted({SquareFromMiddleOfSide()}, CLineExtracter());
  ASSERT_EQ(s.size(), 4U);
  EXPECT_TRUE(SameBits(s[3].length, 0.0));
  EXPECT_TRUE(SameBits(s[3].direction, 0.0));
  EXPECT_TRUE(SameBits(s[3].gradient_direction, 0.0));
  EXPECT_TRUE(SameBits(s[3].spare, 0.0));
}

TEST(SegmentJoin, OpenContourIsNotJoined) {
  TestContour square = SquareFromMiddleOfSide();
  square.closed = false;
  // The ends of an open contour keep their flags, and its last two marks look at its start.
  EXPECT_EQ(Extracted({square}, CLineExtracter()).size(), 5U);
}

TEST(SegmentJoin, GapMustStayBelowTheNeighbourOffset) {
  // The last piece ends two points before the last one, so 160 points leave a gap of 2 pixels to
  // (20, 0) and 159 points one of 3.
  EXPECT_EQ(Extracted({SquareFromMiddleOfSide(160)}, CLineExtracter()).size(), 4U);
  EXPECT_EQ(Extracted({SquareFromMiddleOfSide(159)}, CLineExtracter()).size(), 5U);
}

/// A closed contour of two runs of ten fitted points each, A from the origin and B from (100, 0),
/// each with its own step. The last point belongs to neither.
TestContour TwoPieces(double ax, double ay, double bx, double by) {
  TestContour contour;
  contour.closed = true;
  AppendStraight(contour, 11, 0, 0, ax, ay);
  AppendStraight(contour, 1, 50, 50, 0, 0);
  AppendStraight(contour, 12, 100, 0, bx, by);
  SetAllFlags(contour, 1);
  contour.points[11].f = 0;
  return contour;
}

/// `TwoPieces` behind a contour that gives the third segment which a join needs.
std::size_t NumSegmentsOfTwoPieces(const TestContour& pieces, const CLineExtracter& extracter) {
  return Extracted({ContourOfSegment(50, 0), pieces}, extracter).size();
}

constexpr std::size_t kJoined = 2;
constexpr std::size_t kApart = 3;

TestContour PiecesThatDifferBy(double degrees) {
  const double a = degrees * kHalfTurn / 180;
  return TwoPieces(1, 0, std::cos(a), std::sin(a));
}

TEST(SegmentJoin, AnglesMustDifferByLessThanADegree) {
  const CLineExtracter extracter = ExtracterThatKeepsFlags();
  for (const double sign : {-1.0, 1.0}) {
    EXPECT_EQ(NumSegmentsOfTwoPieces(PiecesThatDifferBy(sign * 0.999), extracter), kJoined);
    EXPECT_EQ(NumSegmentsOfTwoPieces(PiecesThatDifferBy(sign * 1.001), extracter), kApart);
  }
}

TEST(SegmentJoin, AngleEqualToTheLimitIsTooMuch) {
  // Fitted angles 0 and pi/4 exactly: half of atan2(2 Sxy, 0).
  const TestContour pieces = TwoPieces(1, 0, 1, 1);
  CLineExtracter extracter = ExtracterThatKeepsFlags();
  extracter.max_join_angle = kQuarterTurn / 2;
  EXPECT_EQ(NumSegmentsOfTwoPieces(pieces, extracter), kApart);
  extracter.max_join_angle = std::nextafter(kQuarterTurn / 2, 1.0);
  EXPECT_EQ(NumSegmentsOfTwoPieces(pieces, extracter), kJoined);
}

TEST(SegmentJoin, SteepLinesOnEitherSideOfTheVerticalAreNotSeenAsOne) {
  // Half a degree to each side of the vertical gives the fitted angles 89.5 and -89.5 degrees. They
  // differ by 179, which is below half a turn and so not folded.
  const double a = 0.5 * kHalfTurn / 180;
  const TestContour steep = TwoPieces(std::sin(a), std::cos(a), -std::sin(a), std::cos(a));
  EXPECT_EQ(NumSegmentsOfTwoPieces(steep, ExtracterThatKeepsFlags()), kApart);
  const TestContour flat = TwoPieces(std::cos(a), std::sin(a), std::cos(a), -std::sin(a));
  CLineExtracter extracter = ExtracterThatKeepsFlags();
  extracter.max_join_angle = 3 * a;
  EXPECT_EQ(NumSegmentsOfTwoPieces(flat, extracter), kJoined);
}

TEST(SegmentJoin, NeedsMoreThanTwoSegmentsInTheWholeArray) {
  const TestContour pieces = TwoPieces(1, 0, 1, 0);
  const TestContour other = ContourOfSegment(50, 0);
  const CLineExtracter extracter = ExtracterThatKeepsFlags();
  EXPECT_EQ(Extracted({pieces}, extracter).size(), 2U);         // two in the array: not joined
  EXPECT_EQ(Extracted({other, pieces}, extracter).size(), 2U);  // three: joined
  EXPECT_EQ(Extracted({pieces, other}, extracter).size(), 3U);  // the third comes too late
}

TEST(SegmentJoin, NeedsTwoSegmentsOfTheContour) {
  TestContour single = ContourOfSegment(30, 7);
  single.closed = true;
  const TestContour other = ContourOfSegment(50, 0);
  const std::vector<CLineSegment> s = Extracted({other, other, single}, ExtracterThatKeepsFlags());
  ASSERT_EQ(s.size(), 3U);
  EXPECT_EQ(s[2].length, 30.0);
}

TEST(SegmentJoin, ContourWithoutASegmentJoinsNothingOfItsPredecessor) {
  // The last two segments of the array continue each other, but belong to the open contour 0.
  TestContour pieces = TwoPieces(1, 0, 1, 0);
  pieces.closed = false;
  TestContour empty = HorizontalContour(40, 0);
  empty.closed = true;
  EXPECT_EQ(Extracted({ContourOfSegment(50, 0), pieces, empty}, ExtracterThatKeepsFlags()).size(),
            3U);
}

TEST(SegmentJoin, GoesFromTheStartOfTheLastPieceToTheEndOfTheFirst) {
  const std::vector<CLineSegment> s =
      Extracted({ContourOfSegment(50, 0), TwoPieces(1, 0, 2, 0)}, ExtracterThatKeepsFlags());
  ASSERT_EQ(s.size(), 2U);
  const CLineSegment& joined = s[1];
  EXPECT_EQ(joined.start_x, 100.0);  // B's first point
  EXPECT_EQ(joined.end_x, 10.0);     // A's end point
  EXPECT_EQ(joined.mid_x, 55.0);
  EXPECT_EQ(joined.num_points, 20);
  EXPECT_EQ(joined.contour_index, 1);
}

TEST(SegmentJoin, LineIsTheBisectorAndErrorTheMean) {
  // A lies along y = 0.5 with the zigzag error 0.25, B along y = 0.
  TestContour pieces = TwoPieces(1, 0, 1, 0);
  for (std::size_t i = 0; i < 10; ++i) {
    const bool above = i % 4 == 0 || i % 4 == 3;
    pieces.points[i].y = i < 8 ? (above ? 0.75 : 0.25) : 0.5;
  }
  const CLineExtracter extracter = ExtracterThatKeepsFlags();
  TestContour open = pieces;
  open.closed = false;
  const std::vector<CLineSegment> apart = Extracted({ContourOfSegment(50, 0), open}, extracter);
  const std::vector<CLineSegment> s = Extracted({ContourOfSegment(50, 0), pieces}, extracter);
  ASSERT_EQ(apart.size(), 3U);
  ASSERT_EQ(s.size(), 2U);
  EXPECT_NEAR(s[1].line_offset, 0.25, 1e-12);
  EXPECT_NEAR(s[1].line_angle, 0, 1e-12);
  EXPECT_NEAR(s[1].fit_error, std::sqrt(8 * 0.0625 / 10) / 2, 1e-12);
  // Equal counts come out reversed: B stands before A.
  const CLineSegment& b = apart[1];
  const CLineSegment& a = apart[2];
  EXPECT_TRUE(SameBits(s[1].fit_error, (a.fit_error + b.fit_error) * 0.5));
}

TEST(SegmentJoin, StandsWhereTheFirstPieceStood) {
  // Among equal counts the array's order shows, reversed: the joined segment of 20 points took the
  // place of contour 1's first piece, before that contour's middle piece of 20 points.
  TestContour three = TwoPieces(1, 0, 1, 0);
  TestContour middle;
  AppendStraight(middle, 21, 0, 30, 1, 0);
  AppendStraight(middle, 1, 60, 60, 0, 0);
  SetAllFlags(middle, 1);
  middle.points[21].f = 0;
  three.points.insert(three.points.begin() + 12, middle.points.begin(), middle.points.end());
  const std::vector<CLineSegment> s = Extracted(
      {ContourOfSegment(20, 0), three, ContourOfSegment(20, 0)}, ExtracterThatKeepsFlags());
  ASSERT_EQ(s.size(), 4U);
  EXPECT_EQ(s[0].contour_index, 2);
  EXPECT_EQ(s[1].start_y, 30.0);   // contour 1's middle piece
  EXPECT_EQ(s[2].start_x, 100.0);  // contour 1's joined piece
  EXPECT_EQ(s[2].length, 0.0);
  EXPECT_EQ(s[3].contour_index, 0);
}

TEST(SegmentJoin, FirstPieceIsFoundBehindTheSegmentsOfEarlierContours) {
  // Earlier contours that would continue the last piece are passed over.
  const TestContour pieces = TwoPieces(1, 0, 1, 0);
  const std::vector<CLineSegment> s =
      Extracted({pieces, pieces, pieces}, ExtracterThatKeepsFlags());
  // The first contour has only two segments in the array and stays; the others are joined.
  ASSERT_EQ(s.size(), 4U);
  EXPECT_EQ(s[0].contour_index, 2);
  EXPECT_EQ(s[0].num_points, 20);
  EXPECT_EQ(s[1].contour_index, 1);
  EXPECT_EQ(s[1].num_points, 20);
  EXPECT_EQ(s[2].contour_index, 0);
  EXPECT_EQ(s[3].contour_index, 0);
}

}  // namespace
}  // namespace orvandel::test
