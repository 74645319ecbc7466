// When the last and the first segment of a closed contour become one.

#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "tests/lines/two_pieces.h"

namespace orvandel::test {
namespace {

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
