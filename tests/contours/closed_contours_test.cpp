#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/contours/traced.h"

// A contour is closed when its two ends lie less than 3 pixels apart.
namespace orvandel::test {
namespace {

TEST(ClosedContours, WithBothPassesTheirFarEndsAreCompared) {
  // Forward round the ring and up its left side to (1, 5), backward down to (1, 3).
  const Traced traced = Trace({"........",  //
                               ".######.",  //
                               ".#....#.",  //
                               ".#....#.",  //
                               "......#.",  //
                               ".#....#.",  //
                               ".######.",  //
                               "........"});
  ASSERT_EQ(traced.chains.size(), 1u);
  EXPECT_EQ(traced.chains[0], Joined({{{1, 3}, {1, 2}},
                                      RowOfPixels(1, 1, 6),
                                      ColumnOfPixels(6, 2, 6),
                                      RowOfPixels(6, 5, 1),
                                      {{1, 5}}}));
  EXPECT_EQ(traced.closed[0], 1);  // 2 apart
}

TEST(ClosedContours, EndsExactlyThreeApartAreOpen) {
  const Traced traced = Trace({"........",  //
                               ".######.",  //
                               ".#....#.",  //
                               ".#....#.",  //
                               "......#.",  //
                               "......#.",  //
                               ".######.",  //
                               "........"});
  ASSERT_EQ(traced.chains.size(), 1u);
  EXPECT_EQ(traced.chains[0].front(), (Pixel{1, 3}));
  EXPECT_EQ(traced.chains[0].back(), (Pixel{1, 6}));
  EXPECT_EQ(traced.closed[0], 0);
}

TEST(ClosedContours, WithoutBackwardPointsTheStartIsComparedWithTheForwardEnd) {
  EXPECT_EQ(Trace({"......", ".###..", "......"}).closed[0], 1);  // 2 apart
  EXPECT_EQ(Trace({"......", ".####.", "......"}).closed[0], 0);  // 3 apart
}

TEST(ClosedContours, ASinglePixelIsOpenThoughItsEndsCoincide) {
  EXPECT_EQ(Trace({"...", ".#.", "..."}).closed[0], 0);
}

TEST(ClosedContours, WithASingleBackwardPointThatOneIsCompared) {
  // Round the outside and onto the start (4, 1) again, then inside down to (5, 4), which is the
  // square root of 10 away from the start. The backward pass finds (4, 2): the root of 5.
  const Traced traced = Trace({"........",  //
                               "....##..",  //
                               "...####.",  //
                               "...#.##.",  //
                               "....###.",  //
                               ".....#..",  //
                               "........"});
  ASSERT_EQ(traced.chains.size(), 1u);
  ASSERT_EQ(traced.chains[0].size(), 14u);
  EXPECT_EQ(traced.chains[0][9], (Pixel{4, 1}));
  EXPECT_EQ(traced.chains[0][12], (Pixel{5, 4}));
  EXPECT_EQ(traced.chains[0][13], (Pixel{4, 2}));
  EXPECT_EQ(traced.closed[0], 1);
}

/// Row 1 of a 6 x 3 map: pixels 1..4, the first at (first_x, 1) and the last at (last_x, 1).
ContourRecord TraceRunOfFour(double first_x, double last_x) {
  CEdgeImgComplement edges;
  EXPECT_EQ(edges.SetSize(6, 3), 0);
  edges.Store(first_x, 1.0, 0.5);
  edges.Store(last_x, 1.0, 0.25);
  const ImagePtr image = ImageOf(Drawn({"......", ".####.", "......"}));
  const ContourSet owner = TraceContours(RowsOf(*image), &edges, 1, kAnySize);
  const ContourSetView contours = owner.View();
  EXPECT_EQ(contours.records.size(), 1u);
  EXPECT_EQ(ValuesOf(contours.x), (std::vector<double>{first_x, 2.0, 3.0, last_x}));
  EXPECT_EQ(ValuesOf(contours.g), (std::vector<double>{0.5, 0.0, 0.0, 0.25}));
  return contours.records[0];
}

TEST(ClosedContours, SubPixelPositionsDecide) {
  EXPECT_EQ(TraceRunOfFour(1.0, 4.0).closed, 0);
  EXPECT_EQ(TraceRunOfFour(1.25, 4.0).closed, 1);
  EXPECT_EQ(TraceRunOfFour(1.25, 4.25).closed, 0);
  EXPECT_EQ(TraceRunOfFour(1.25, 4.125).closed, 1);
}

}  // namespace
}  // namespace orvandel::test
