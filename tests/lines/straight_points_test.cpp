// Which points of a contour count as straight.

#include <cmath>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "orvandel/classic/line_extracter.h"
#include "tests/lines/contour_shapes.h"

namespace orvandel::test {
namespace {

constexpr int kOpen = 0;
constexpr int kClosed = 1;
constexpr int kUntouched = 7;  // a flag that marking never writes

Points StraightPoints(int count) {
  Points points;
  for (int i = 0; i < count; ++i) {
    points.x.push_back(i);
    points.y.push_back(5);
  }
  return points;
}

/// Points on a circle of the given radius, `spacing` radians apart.
Points ArcPoints(int count, double radius, double spacing) {
  Points points;
  for (int i = 0; i < count; ++i) {
    points.x.push_back(radius * std::cos(i * spacing));
    points.y.push_back(radius * std::sin(i * spacing));
  }
  return points;
}

struct Marks {
  int result;
  std::vector<int> flags;
};

Marks Mark(const Points& points, int closed, CLineExtracter extracter = CLineExtracter()) {
  const int n = static_cast<int>(points.x.size());
  Marks marks{0, std::vector<int>(points.x.size(), kUntouched)};
  marks.result =
      extracter.MarkStraightPoints(points.x.data(), points.y.data(), marks.flags.data(), n, closed);
  return marks;
}

/// `count` flags that are `inside` from first to last and untouched elsewhere.
std::vector<int> FlagsBetween(int count, int first, int last, int inside) {
  std::vector<int> flags(static_cast<std::size_t>(count), kUntouched);
  for (int i = first; i <= last; ++i)
    flags[static_cast<std::size_t>(i)] = inside;
  return flags;
}

TEST(StraightPoints, SixPointsAreTooFewToBeMarked) {
  for (const int closed : {kOpen, kClosed}) {
    const Marks marks = Mark(StraightPoints(6), closed);
    EXPECT_EQ(marks.result, 1);
    EXPECT_EQ(marks.flags, FlagsBetween(6, 0, -1, 0));
  }
}

TEST(StraightPoints, NoPointIsTooFew) {
  EXPECT_EQ(Mark(StraightPoints(0), kOpen).result, 1);
  EXPECT_EQ(Mark(StraightPoints(0), kClosed).result, 1);
}

TEST(StraightPoints, OfSevenOpenPointsTheMiddleOneIsMarked) {
  // Point 3 is judged against the chord from point 0 to point 1 (3 + 3 modulo 5).
  const Marks marks = Mark(StraightPoints(7), kOpen);
  EXPECT_EQ(marks.result, 0);
  EXPECT_EQ(marks.flags, FlagsBetween(7, 3, 3, 1));
}

TEST(StraightPoints, OfSevenClosedPointsAllAreMarked) {
  const Marks marks = Mark(StraightPoints(7), kClosed);
  EXPECT_EQ(marks.result, 0);
  EXPECT_EQ(marks.flags, std::vector<int>(7, 1));
}

TEST(StraightPoints, OpenContourKeepsThreeFlagsAtEachEnd) {
  const Marks marks = Mark(StraightPoints(40), kOpen);
  EXPECT_EQ(marks.result, 0);
  EXPECT_EQ(marks.flags, FlagsBetween(40, 3, 36, 1));
}

TEST(StraightPoints, BentOpenContourGetsZerosBetweenItsEnds) {
  // On a circle of radius 5 a chord of six steps of 1 pixel passes 0.87 pixels inside its middle
  // point, and the chords back to points 0 and 1 pass farther away still.
  const Marks marks = Mark(ArcPoints(25, 5, 0.2), kOpen);
  EXPECT_EQ(marks.flags, FlagsBetween(25, 3, 21, 0));
}

TEST(StraightPoints, LastTwoPointsOfOpenContourAreJudgedAgainstItsStart) {
  // The modulus is n - 2 = 38, so point 35 looks from 32 to 0 and point 36 from 33 to 1. Only the
  // contour's first two points lie off its line, and no chord of points 5 to 34 reaches them.
  Points points = StraightPoints(40);
  points.y[0] = points.y[1] = 500;
  std::vector<int> expected = FlagsBetween(40, 3, 36, 1);
  expected[3] = expected[4] = 0;  // chords from point 0 and from point 1
  expected[35] = expected[36] = 0;
  EXPECT_EQ(Mark(points, kOpen).flags, expected);
}

TEST(StraightPoints, LastTwoPointsOfOpenContourDoNotLookAtItsEnd) {
  // Points 38 and 39 would be the forward neighbours of 35 and 36 without the modulus.
  Points points = StraightPoints(40);
  points.y[38] = points.y[39] = 500;
  EXPECT_EQ(Mark(points, kOpen).flags, FlagsBetween(40, 3, 36, 1));
}

TEST(StraightPoints, ClosedContourWrapsBeforeItsLastTwoPoints) {
  // Modulus 38: points 38 and 39 are nobody's neighbours and are only judged themselves, 38 against
  // the chord from 35 to 3 and 39 against the chord from 36 to 4.
  Points points = StraightPoints(40);
  points.y[38] = points.y[39] = 500;
  std::vector<int> expected(40, 1);
  expected[38] = expected[39] = 0;
  EXPECT_EQ(Mark(points, kClosed).flags, expected);
}

TEST(StraightPoints, ClosedContourWrapsBackwardsToModulus) {
  // Points 0, 1, 2 look back to 35, 36, 37; so does point 38 to 35, 39 to 36, and 32, 33, 34 look
  // forward to them. A single point off the line at 36 spoils its own mark and those of the points
  // whose chord ends there: 1 and 39 (36 + 3 modulo 38 and one lap later), and 33.
  Points points = StraightPoints(40);
  points.y[36] = 500;
  std::vector<int> expected(40, 1);
  expected[36] = expected[1] = expected[39] = expected[33] = 0;
  EXPECT_EQ(Mark(points, kClosed).flags, expected);
}

TEST(StraightPoints, AnyNonZeroClosedMeansClosed) {
  EXPECT_EQ(Mark(StraightPoints(9), 2).flags, std::vector<int>(9, 1));
}

/// Marks one open contour whose point 10 lies `height` above a straight line, and tells its flag.
int FlagOfPointAbove(double height, const CLineExtracter& extracter = CLineExtracter()) {
  Points points = StraightPoints(21);
  points.y[10] = 5 - height;
  return Mark(points, kOpen, extracter).flags[10];
}

TEST(StraightPoints, DeviationMustStayBelowAQuarterPixel) {
  EXPECT_EQ(FlagOfPointAbove(0.2499), 1);
  EXPECT_EQ(FlagOfPointAbove(0.2501), 0);
  EXPECT_EQ(FlagOfPointAbove(-0.2499), 1);  // on either side
  EXPECT_EQ(FlagOfPointAbove(-0.2501), 0);
}

TEST(StraightPoints, DeviationEqualToTheLimitIsNotStraight) {
  CLineExtracter extracter;
  extracter.max_deviation = 0;
  EXPECT_EQ(FlagOfPointAbove(0, extracter), 0);
  extracter.max_deviation = std::numeric_limits<double>::min();
  EXPECT_EQ(FlagOfPointAbove(0, extracter), 1);
}

TEST(StraightPoints, NeighbourOffsetSetsReachAndLeastCount) {
  CLineExtracter extracter;
  extracter.neighbour_offset = 5;
  EXPECT_EQ(Mark(StraightPoints(10), kOpen, extracter).result, 1);
  EXPECT_EQ(Mark(StraightPoints(11), kOpen, extracter).flags, FlagsBetween(11, 5, 5, 1));
  EXPECT_EQ(Mark(StraightPoints(20), kOpen, extracter).flags, FlagsBetween(20, 5, 14, 1));
}

TEST(StraightPoints, PositionThatIsNotANumberIsNotStraight) {
  Points points = StraightPoints(21);
  points.x[10] = std::numeric_limits<double>::quiet_NaN();
  std::vector<int> expected = FlagsBetween(21, 3, 17, 1);
  expected[7] = expected[10] = expected[13] = 0;  // the point and those whose chord it ends
  EXPECT_EQ(Mark(points, kOpen).flags, expected);
}

TEST(StraightPoints, CoincidentPointsAreStraight) {
  // A chord of no length has angle 0 and every distance is 0.
  Points points = StraightPoints(12);
  points.x.assign(12, 3);
  EXPECT_EQ(Mark(points, kClosed).flags, std::vector<int>(12, 1));
}

}  // namespace
}  // namespace orvandel::test
