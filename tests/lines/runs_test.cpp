// Which runs of flagged points become segments. The contours are too short for this extracter to
// mark, so their flags are the test's own.

#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/lines/contour_shapes.h"

namespace orvandel::test {
namespace {

struct Range {
  double first;  ///< x of the segment's first point, which is its index
  double end;    ///< x of its end point
  int num_points;
  bool operator==(const Range&) const = default;
};

void PrintTo(const Range& s, std::ostream* stream) {
  *stream << "points " << s.first << ".." << s.end << ", count " << s.num_points;
}

/// Segments of a contour along y = 0 with point i at x = i and these flags, most points first.
std::vector<Range> RangesOf(const std::vector<std::uint32_t>& flags, bool closed = false) {
  TestContour contour = HorizontalContour(static_cast<int>(flags.size()), 0);
  contour.closed = closed;
  SetFlags(contour, flags);
  const ContourHandle set = MakeSet({contour});
  CLineExtracter extracter = ExtracterThatKeepsFlags();
  extracter.Extract(set.get());
  std::vector<Range> ranges;
  for (const CLineSegment& s : extracter.segments)
    ranges.push_back({s.start_x, s.end_x, s.num_points});
  return ranges;
}

using Ranges = std::vector<Range>;

TEST(Runs, FivePointsBeforeAZeroFlagAreDropped) {
  EXPECT_EQ(RangesOf({0, 1, 1, 1, 1, 1, 0, 0}), Ranges());
}

TEST(Runs, SixPointsBeforeAZeroFlagAreKept) {
  EXPECT_EQ(RangesOf({0, 1, 1, 1, 1, 1, 1, 0, 0}), (Ranges{{1, 6, 5}}));
}

TEST(Runs, CountMustExceedMinPoints) {
  TestContour contour = HorizontalContour(30, 0);
  SetAllFlags(contour, 1);  // 0..28, 28 points fitted
  const ContourHandle set = MakeSet({contour});
  CLineExtracter extracter = ExtracterThatKeepsFlags();
  extracter.min_points = 27;
  EXPECT_EQ(extracter.Extract(set.get()), 1);
  extracter.min_points = 28;
  EXPECT_EQ(extracter.Extract(set.get()), 0);
}

TEST(Runs, RunThatReachesTheEndStopsBeforeTheLastPoint) {
  EXPECT_EQ(RangesOf({1, 1, 1, 1, 1, 1, 1, 1, 1, 1}), (Ranges{{0, 8, 8}}));
  EXPECT_EQ(RangesOf({0, 0, 1, 1, 1, 1, 1, 1, 1, 1}), (Ranges{{2, 8, 6}}));
}

TEST(Runs, LastPointNeedNotBeFlaggedForThat) {
  // A zero at the very last point ends the run in the same place.
  EXPECT_EQ(RangesOf({0, 0, 1, 1, 1, 1, 1, 1, 1, 0}), (Ranges{{2, 8, 6}}));
}

TEST(Runs, SixOrSevenPointsInAllAreTheShortestContours) {
  EXPECT_EQ(RangesOf(std::vector<std::uint32_t>(6, 1)), Ranges());  // 0..4, 4 points
  EXPECT_EQ(RangesOf(std::vector<std::uint32_t>(7, 1)), (Ranges{{0, 5, 5}}));
}

TEST(Runs, TinyContoursGiveNothing) {
  for (std::size_t size = 0; size < 6; ++size)
    EXPECT_EQ(RangesOf(std::vector<std::uint32_t>(size, 1)), Ranges()) << size;
}

TEST(Runs, OnlyTheFlagOneStartsARun) {
  // Index:            0  1  2           3  4  5  6  7  8  9 10 11
  EXPECT_EQ(RangesOf({2, 3, 0xFFFFFFFFU, 1, 1, 1, 1, 1, 1, 1, 0, 0}), (Ranges{{3, 9, 6}}));
  EXPECT_EQ(RangesOf(std::vector<std::uint32_t>(20, 2)), Ranges());
}

TEST(Runs, AnyNonZeroFlagContinuesARun) {
  EXPECT_EQ(RangesOf({1, 2, 3, 0x80000000U, 0xFFFFFFFFU, 256, 7, 0, 0}), (Ranges{{0, 6, 6}}));
}

TEST(Runs, ScanGoesOnBehindTheZeroFlag) {
  EXPECT_EQ(RangesOf({1, 1, 1, 1, 1, 1, 1, 0, 1, 1, 1, 1, 1, 1, 0}),
            (Ranges{{0, 6, 6}, {8, 13, 5}}));
}

TEST(Runs, DroppedRunDoesNotStopTheScan) {
  EXPECT_EQ(RangesOf({1, 1, 1, 0, 1, 0, 1, 1, 1, 1, 1, 1, 0}), (Ranges{{6, 11, 5}}));
}

TEST(Runs, FlaggedLastPointAloneGivesNothing) {
  EXPECT_EQ(RangesOf({1, 1, 1, 1, 1, 1, 1, 0, 0, 1}), (Ranges{{0, 6, 6}}));
}

TEST(Runs, ClosedContourIsCutAtItsSeamToo) {
  EXPECT_EQ(RangesOf(std::vector<std::uint32_t>(20, 1), true), (Ranges{{0, 18, 18}}));
}

TEST(Runs, ContourOfSixPointsKeepsItsFlagsUnderTheDefaults) {
  // Too short to be marked with the default reach of 3, and too short for a segment; with a lower
  // minimum its old flags give one.
  TestContour contour = HorizontalContour(6, 0);
  SetFlags(contour, {1, 5, 5, 5, 5, 5});
  const ContourHandle set = MakeSet({contour});
  CLineExtracter extracter;
  EXPECT_EQ(extracter.Extract(set.get()), 0);
  EXPECT_EQ(FlagsOf(set), (std::vector<int>{1, 5, 5, 5, 5, 5}));
  extracter.min_points = 3;
  ASSERT_EQ(extracter.Extract(set.get()), 1);
  EXPECT_EQ(extracter.segments[0].num_points, 4);
  EXPECT_EQ(extracter.segments[0].end_x, 4.0);
}

TEST(Runs, OldFlagsAtTheEndsOfAnOpenContourTakePart) {
  // Marking writes points 3..16 of 20; the three old ones on each side lengthen the run.
  TestContour contour = HorizontalContour(20, 0);
  const ContourHandle plain = MakeSet({contour});
  SetAllFlags(contour, 1);
  const ContourHandle flagged = MakeSet({contour});
  CLineExtracter extracter;
  ASSERT_EQ(extracter.Extract(plain.get()), 1);
  EXPECT_EQ(extracter.segments[0].start_x, 3.0);
  EXPECT_EQ(extracter.segments[0].end_x, 16.0);
  EXPECT_EQ(extracter.segments[0].num_points, 13);
  ASSERT_EQ(extracter.Extract(flagged.get()), 1);
  EXPECT_EQ(extracter.segments[0].start_x, 0.0);
  EXPECT_EQ(extracter.segments[0].end_x, 18.0);
  EXPECT_EQ(extracter.segments[0].num_points, 18);
}

}  // namespace
}  // namespace orvandel::test
