#include <vector>

#include <gtest/gtest.h>

#include "tests/contours/traced.h"

// How the two passes from a chain's start make one contour, followed by hand.
namespace orvandel::test {
namespace {

TEST(ChainOrder, BackwardPointsComeFirstAndReversed) {
  const Traced traced = Trace({".............",  //
                               ".....#######.",  //
                               "....#........",  //
                               "...#.........",  //
                               "..#..........",  //
                               "............."});
  ASSERT_EQ(traced.chains.size(), 1u);
  EXPECT_EQ(traced.chains[0], Joined({{{2, 4}, {3, 3}, {4, 2}}, RowOfPixels(1, 5, 11)}));
  EXPECT_EQ(traced.closed[0], 0);
}

TEST(ChainOrder, TwoBackwardPointsComeFirstToo) {
  const Traced traced = Trace({"......",  //
                               ".####.",  //
                               ".#....",  //
                               ".#....",  //
                               "......"});
  ASSERT_EQ(traced.chains.size(), 1u);
  EXPECT_EQ(traced.chains[0], Joined({{{1, 3}, {1, 2}}, RowOfPixels(1, 1, 4)}));
}

TEST(ChainOrder, ASingleBackwardPointStaysLast) {
  // From S = (2, 1) the forward pass goes round the outside, steps onto S again from (1, 2), which
  // clears it, and ends inside at (3, 2), (4, 3). The backward pass finds (2, 2) and from there
  // nothing, S being cleared.
  const Traced traced = Trace({".......",  //
                               "..##...",  //
                               ".####..",  //
                               "..#.##.",  //
                               "...##..",  //
                               "......."});
  ASSERT_EQ(traced.chains.size(), 1u);
  EXPECT_EQ(traced.chains[0], (Chain{{2, 1},
                                     {3, 1},
                                     {4, 2},
                                     {5, 3},
                                     {4, 4},
                                     {3, 4},
                                     {2, 3},
                                     {1, 2},
                                     {2, 1},
                                     {3, 2},
                                     {4, 3},
                                     {2, 2}}));
  EXPECT_EQ(traced.closed[0], 1);  // (4, 3) to (2, 2): the square root of 5
  EXPECT_TRUE(IsBlank(traced.left));
}

TEST(ChainOrder, AForwardPassWithNothingElseLeftStepsBackOntoTheStart) {
  const Traced traced = Trace({"....", ".##.", "...."});
  ASSERT_EQ(traced.chains.size(), 1u);
  EXPECT_EQ(traced.chains[0], (Chain{{1, 1}, {2, 1}, {1, 1}}));
  EXPECT_EQ(traced.closed[0], 1);
}

TEST(ChainOrder, ABackwardPassWithNothingElseLeftStepsBackOntoTheStart) {
  // Backward: (1, 2), then up onto the start, which is still set.
  const Traced traced = Trace({"......", ".####.", ".#....", "......"});
  ASSERT_EQ(traced.chains.size(), 1u);
  EXPECT_EQ(traced.chains[0], (Chain{{1, 1}, {1, 2}, {1, 1}, {2, 1}, {3, 1}, {4, 1}}));
  EXPECT_EQ(traced.closed[0], 0);  // (4, 1) to (1, 1): 3, and less is asked
}

TEST(ChainOrder, TheStartCountsEveryTimeItIsRecorded) {
  const std::vector<std::string> map = {"....", ".##.", "...."};
  EXPECT_EQ(Trace(map, 3, 3).chains.size(), 1u);
  EXPECT_EQ(Trace(map, 4, 9).chains.size(), 0u);
  EXPECT_EQ(Trace(map, 1, 2).chains.size(), 0u);
}

}  // namespace
}  // namespace orvandel::test
