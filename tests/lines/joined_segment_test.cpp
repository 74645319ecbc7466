// What the segment holds that two pieces of a closed contour are joined to.

#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "orvandel/classic/mvtools_i.h"
#include "tests/lines/two_pieces.h"
#include "tests/support/segments.h"

namespace orvandel::test {
namespace {

TEST(JoinedSegment, CoversTheSideInWhoseMiddleTheSquareBegins) {
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

TEST(JoinedSegment, HasNoLengthAndNoDirections) {
  const std::vector<CLineSegment> s = Extracted({SquareFromMiddleOfSide()}, CLineExtracter());
  ASSERT_EQ(s.size(), 4U);
  EXPECT_TRUE(SameBits(s[3].length, 0.0));
  EXPECT_TRUE(SameBits(s[3].direction, 0.0));
  EXPECT_TRUE(SameBits(s[3].gradient_direction, 0.0));
  EXPECT_TRUE(SameBits(s[3].spare, 0.0));
}

TEST(JoinedSegment, GoesFromTheStartOfTheLastPieceToTheEndOfTheFirst) {
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

TEST(JoinedSegment, LineIsTheBisectorAndErrorTheMean) {
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

TEST(JoinedSegment, BisectorTakesTheLastPieceFirst) {
  // Where the lines' directions differ by more than a right angle, the bisector turns its second
  // line over, and the order shows in the last bits.
  CLineExtracter extracter = ExtracterThatKeepsFlags();
  extracter.max_join_angle = 4;
  int num_telling = 0;
  for (int i = 1; i <= 20; ++i) {
    const double a = i * 0.013;
    const double b = i * 0.021;
    const TestContour pieces = TwoPieces(std::sin(a), std::cos(a), -std::sin(b), std::cos(b));
    TestContour open = pieces;
    open.closed = false;
    const std::vector<CLineSegment> apart = Extracted({ContourOfSegment(50, 0), open}, extracter);
    const std::vector<CLineSegment> s = Extracted({ContourOfSegment(50, 0), pieces}, extracter);
    ASSERT_EQ(apart.size(), 3U);
    ASSERT_EQ(s.size(), 2U);
    const CLineSegment& last = apart[1];  // of equal counts the later comes first
    const CLineSegment& first = apart[2];
    double angle = 0;
    double offset = 0;
    mvt_line_bisect(last.line_angle, last.line_offset, first.line_angle, first.line_offset, &angle,
                    &offset);
    EXPECT_TRUE(SameBits(s[1].line_angle, angle));
    EXPECT_TRUE(SameBits(s[1].line_offset, offset));
    double swapped_angle = 0;
    double swapped_offset = 0;
    mvt_line_bisect(first.line_angle, first.line_offset, last.line_angle, last.line_offset,
                    &swapped_angle, &swapped_offset);
    num_telling += AreSameBits(angle, swapped_angle) && AreSameBits(offset, swapped_offset) ? 0 : 1;
  }
  EXPECT_GT(num_telling, 0);
}

TEST(JoinedSegment, StandsWhereTheFirstPieceStood) {
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

}  // namespace
}  // namespace orvandel::test
