#include "contours/contour_tracing.h"

#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/contours/traced.h"

// Which pixels become which contours, drawn and followed by hand.
namespace orvandel::test {
namespace {

TEST(ContourTracing, ABlankMapGivesNothing) {
  const Traced traced = Trace({"....", "....", "....", "....", "...."});
  EXPECT_TRUE(traced.chains.empty());
}

TEST(ContourTracing, AHorizontalRunIsFollowedFromLeftToRight) {
  const std::string blank(42, '.');
  const Traced traced = Trace({blank, "." + std::string(40, '#') + ".", blank}, 30);
  ASSERT_EQ(traced.chains.size(), 1u);
  EXPECT_EQ(traced.chains[0], RowOfPixels(1, 1, 40));
  EXPECT_EQ(traced.closed[0], 0);
  EXPECT_TRUE(IsBlank(traced.left));
}

TEST(ContourTracing, ATooShortRunIsDroppedButClearedAllTheSame) {
  const std::string blank(42, '.');
  const Traced traced =
      Trace({blank, "." + std::string(25, '#') + std::string(16, '.'), blank}, 30);
  EXPECT_TRUE(traced.chains.empty());
  EXPECT_TRUE(IsBlank(traced.left));
}

TEST(ContourTracing, AVerticalRunIsFollowedFromTopToBottom) {
  const Traced traced = Trace({"...", ".#.", ".#.", ".#.", ".#.", ".#.", "..."});
  ASSERT_EQ(traced.chains.size(), 1u);
  EXPECT_EQ(traced.chains[0], ColumnOfPixels(1, 1, 5));
  EXPECT_EQ(traced.closed[0], 0);  // ends 4 apart
}

TEST(ContourTracing, ASquareRingEndsOnItsFirstPixelAgain) {
  std::vector<std::string> ring = {".............", ".###########."};
  for (int row = 2; row <= 10; ++row)
    ring.push_back(".#.........#.");
  ring.push_back(".###########.");
  ring.push_back(".............");
  const Traced traced = Trace(ring, 30);
  ASSERT_EQ(traced.chains.size(), 1u);
  EXPECT_EQ(traced.chains[0], Joined({RowOfPixels(1, 1, 11), ColumnOfPixels(11, 2, 11),
                                      RowOfPixels(11, 10, 1), ColumnOfPixels(1, 10, 1)}));
  EXPECT_EQ(traced.chains[0].size(), 41u);
  EXPECT_EQ(traced.closed[0], 1);
}

TEST(ContourTracing, ABranchThatIsPassedByStartsAContourOfItsOwn) {
  const Traced traced = Trace({".........",  //
                               ".#######.",  //
                               "....#....",  //
                               "....#....",  //
                               "....#....",  //
                               "....#....",  //
                               "........."});
  ASSERT_EQ(traced.chains.size(), 2u);
  EXPECT_EQ(traced.chains[0], RowOfPixels(1, 1, 7));
  EXPECT_EQ(traced.chains[1], ColumnOfPixels(4, 2, 5));
  EXPECT_EQ(traced.closed, (std::vector<int>{0, 0}));
}

TEST(ContourTracing, ALeftTurnComesFirstAndStraightBackLast) {
  // From (1, 1) to (2, 1), and there clockwise from the left turn. Row 0 starts no chain.
  const std::vector<Pixel> in_order = {{2, 0}, {3, 0}, {3, 1}, {3, 2}, {2, 2}, {1, 2}};
  for (std::size_t first = 0; first <= in_order.size(); ++first) {
    std::vector<std::string> map = {".....", ".##..", ".....", "....."};
    for (std::size_t i = first; i < in_order.size(); ++i)
      map[static_cast<std::size_t>(in_order[i].row)][static_cast<std::size_t>(in_order[i].column)] =
          '#';
    const Traced traced = Trace(map);
    ASSERT_GE(traced.chains.size(), 1u);
    ASSERT_GE(traced.chains[0].size(), 3u);
    EXPECT_EQ(traced.chains[0][1], (Pixel{2, 1}));
    EXPECT_EQ(traced.chains[0][2], first < in_order.size() ? in_order[first] : (Pixel{1, 1}));
  }
}

TEST(ContourTracing, SizeLimitsIncludeTheirBounds) {
  const std::vector<std::string> run_of_10 = {"............", ".##########.", "............"};
  EXPECT_EQ(Trace(run_of_10, 10, 10).chains.size(), 1u);
  EXPECT_EQ(Trace(run_of_10, 11, 100).chains.size(), 0u);
  EXPECT_EQ(Trace(run_of_10, 1, 9).chains.size(), 0u);
  EXPECT_EQ(Trace(run_of_10, 20, 5).chains.size(), 0u);
}

TEST(ContourTracing, ADroppedChainLeavesNoGapInThePoints) {
  const ImagePtr image = ImageOf(Drawn({"..............",  //
                                        ".#####........",  //
                                        "..............",  //
                                        ".############.",  //
                                        "..............",  //
                                        "..###.........",  //
                                        "..............",  //
                                        ".##########...",  //
                                        ".............."}));
  const ContourSet owner = TraceContours(RowsOf(*image), nullptr, 10, kAnySize);
  const ContourSetView contours = owner.View();
  ASSERT_EQ(contours.records.size(), 2u);
  EXPECT_EQ(contours.records[0].start, 0);
  EXPECT_EQ(contours.records[0].size, 12);
  EXPECT_EQ(contours.records[1].start, 12);
  EXPECT_EQ(contours.records[1].size, 10);
  EXPECT_EQ(contours.y[11], 3.0);
  EXPECT_EQ(contours.y[12], 7.0);
  EXPECT_TRUE(IsBlank(GridOf(*image)));
}

TEST(ContourTracing, ASinglePixelIsAnOpenContourOfOnePoint) {
  const Traced traced = Trace({".....", ".....", "..#..", "....."});
  ASSERT_EQ(traced.chains.size(), 1u);
  EXPECT_EQ(traced.chains[0], Chain{(Pixel{2, 2})});
  EXPECT_EQ(traced.closed[0], 0);
}

TEST(ContourTracing, RowAndColumn0StartNoChain) {
  const Traced traced = Trace({"######", "#.....", "#.....", "#....."});
  EXPECT_TRUE(traced.chains.empty());
  EXPECT_EQ(traced.left, Drawn({"######", "#.....", "#.....", "#....."}));
}

TEST(ContourTracing, ButAPassMayRunIntoThem) {
  const Traced traced = Trace({"...##.",  //
                               ".##..#",  //
                               "......"});
  ASSERT_EQ(traced.chains.size(), 1u);
  EXPECT_EQ(traced.chains[0], (Chain{{1, 1}, {2, 1}, {3, 0}, {4, 0}, {5, 1}}));
  EXPECT_TRUE(IsBlank(traced.left));
}

TEST(ContourTracing, TheFirstSearchLooksEverywhereButUpRight) {
  const struct {
    Pixel neighbour;
    bool seen;
  } kAround[] = {{{2, 1}, true}, {{2, 2}, true}, {{1, 2}, true}, {{0, 2}, true},
                 {{0, 1}, true}, {{0, 0}, true}, {{1, 0}, true}, {{2, 0}, false}};
  for (const auto& around : kAround) {
    std::vector<std::string> map = {"...", ".#.", "..."};
    map[static_cast<std::size_t>(around.neighbour.row)]
       [static_cast<std::size_t>(around.neighbour.column)] = '#';
    const Traced traced = Trace(map);
    ASSERT_EQ(traced.chains.size(), 1u);
    // A neighbour that is seen is taken, and from it the pass steps back onto the start.
    EXPECT_EQ(traced.chains[0].size(), around.seen ? 3u : 1u) << around.neighbour;
    EXPECT_EQ(IsBlank(traced.left), around.seen) << around.neighbour;
  }
}

TEST(ContourTracing, NeighboursOutsideTheImageCountAsBlank) {
  EXPECT_EQ(Trace({"#"}).chains.size(), 0u);
  EXPECT_EQ(Trace({"####"}).chains.size(), 0u);
  EXPECT_EQ(Trace({"#", "#", "#"}).chains.size(), 0u);
  const Traced corner = Trace({"....", "....", "..##", "..##"});
  ASSERT_EQ(corner.chains.size(), 1u);
  // Clockwise round the block; from (2, 3) the start is straight up, and it is still set.
  EXPECT_EQ(corner.chains[0], (Chain{{2, 2}, {3, 2}, {3, 3}, {2, 3}, {2, 2}}));
}

TEST(ContourTracing, ADenseMapIsFollowedWhole) {
  // More chains and points than half and a quarter of the image's area would hold.
  for (const int height : {2, 4, 9}) {
    const int width = 41;
    const Grid full(static_cast<std::size_t>(height),
                    std::vector<int>(static_cast<std::size_t>(width), 255));
    Grid map = full;
    const std::vector<TestContour> expected = ReferenceTrace(map, nullptr, 1, kAnySize);
    const ImagePtr image = ImageOf(full);
    const ContourSet owner = TraceContours(RowsOf(*image), nullptr, 1, kAnySize);
    const ContourSetView contours = owner.View();
    ASSERT_EQ(contours.records.size(), expected.size());
    const auto num_points = static_cast<int>(contours.NumPoints());
    EXPECT_GE(num_points, (width - 1) * (height - 1));
    EXPECT_GT(num_points, width * height / 2 - 1);
    EXPECT_EQ(GridOf(*image), map);
  }
}

}  // namespace
}  // namespace orvandel::test
