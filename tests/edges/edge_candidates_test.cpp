#include <cstddef>
#include <vector>

#include <gtest/gtest.h>

#include "tests/edges/kernel_runs.h"
#include "tests/support/image_patterns.h"
#include "tests/support/simd_levels.h"

namespace orvandel::test {
namespace {

using EdgeCandidatesTest = AtEverySimdLevel;
ORVANDEL_AT_EVERY_SIMD_LEVEL(EdgeCandidatesTest);

EdgeCandidates Find(const Grid& grid, int threshold) {
  return FindEdgeCandidates(*ImageOf(grid), threshold, RowKernelsOf(ActiveSimdLevel()));
}

/// 0 before column 6, 99 from there on. Smoothed: ... 0 33 66 99 ... in columns 4, 5, 6, 7, so the
/// horizontal gradient is 33 66 66 33 there and the magnitude 23 46 46 23.
Grid VerticalStep() {
  return Painted(12, 8, [](int x, int) { return x < 6 ? 0 : 99; });
}

TEST_P(EdgeCandidatesTest, VerticalStepByHand) {
  const EdgeCandidates found = Find(VerticalStep(), 1);
  ASSERT_EQ(found.list.size(), 4u * 4u);  // columns 4..7, rows 2..5
  const int expected[12] = {0, 0, 0, 0, 23, 46, 46, 23, 0, 0, 0, 0};
  for (int y = 2; y <= 5; ++y) {
    for (int x = 0; x < 12; ++x)
      EXPECT_EQ(At(found.magnitude, x, y), expected[x]) << x << ' ' << y;
  }
}

TEST_P(EdgeCandidatesTest, CodesFollowTheGradientTowardTheBrightSide) {
  const Grid left_dark = VerticalStep();
  const Grid right_dark = Painted(12, 8, [](int x, int) { return x < 6 ? 99 : 0; });
  const Grid top_dark = Painted(8, 12, [](int, int y) { return y < 6 ? 0 : 99; });
  const Grid bottom_dark = Painted(8, 12, [](int, int y) { return y < 6 ? 99 : 0; });
  const struct {
    const Grid& image;
    int direction, sector;
  } kCases[] = {{left_dark, 0, 0}, {right_dark, 128, 0}, {top_dark, 192, 2}, {bottom_dark, 64, 2}};
  for (const auto& c : kCases) {
    const EdgeCandidates found = Find(c.image, 1);
    EXPECT_EQ(found.list.size(), 16u);
    for (const EdgeCandidate& candidate : found.list) {
      EXPECT_EQ(candidate.direction, c.direction);
      EXPECT_EQ(candidate.sector, c.sector);
    }
  }
}

TEST_P(EdgeCandidatesTest, ComeRowByRow) {
  const EdgeCandidates found = Find(VerticalStep(), 1);
  for (std::size_t i = 0; i < found.list.size(); ++i) {
    EXPECT_EQ(found.list[i].y, 2 + static_cast<int>(i / 4));
    EXPECT_EQ(found.list[i].x, 4 + static_cast<int>(i % 4));
  }
}

TEST_P(EdgeCandidatesTest, TheThresholdItselfIsKept) {
  EXPECT_EQ(Find(VerticalStep(), 46).list.size(), 2u * 4u);
  EXPECT_EQ(Find(VerticalStep(), 47).list.size(), 0u);
}

TEST_P(EdgeCandidatesTest, AMagnitudeBelowTheThresholdIsNotWritten) {
  const EdgeCandidates found = Find(VerticalStep(), 24);
  EXPECT_EQ(At(found.magnitude, 4, 3), 0);
  EXPECT_EQ(At(found.magnitude, 5, 3), 46);
  EXPECT_EQ(At(found.magnitude, 7, 3), 0);
}

TEST_P(EdgeCandidatesTest, WithoutThresholdEveryGradientCounts) {
  // A step of 6 smooths to 0 2 4 6: gradients 2 4 4 2, magnitudes 1 2 2 1.
  const Grid step = Painted(12, 8, [](int x, int) { return x < 6 ? 0 : 6; });
  for (const int threshold : {-5, 0, 1})
    EXPECT_EQ(Find(step, threshold).list.size(), 16u);
  EXPECT_EQ(Find(step, 2).list.size(), 8u);
}

TEST_P(EdgeCandidatesTest, TheStrongestStraightStepHasMagnitude118) {
  // Smoothed 0 85 170 255: gradient 170, times 0.7 is 118.99...
  const Grid step = Painted(12, 8, [](int x, int) { return x < 6 ? 0 : 255; });
  EXPECT_EQ(Find(step, 118).list.size(), 2u * 4u);
  EXPECT_EQ(Find(step, 119).list.size(), 0u);
}

TEST_P(EdgeCandidatesTest, OnlyTheFourDiagonalNeighboursEnterTheGradient) {
  // One row of 90 among 0: smoothed 30 in rows 3, 4 and 5. In row 4 the rows above and below are
  // equal, so there is no gradient at all; in row 3 it is (0 + 0 - 30 - 30) / 2.
  const Grid line = Painted(9, 9, [](int, int y) { return y == 4 ? 90 : 0; });
  const EdgeCandidates found = Find(line, 0);
  EXPECT_EQ(At(found.magnitude, 4, 4), 0);
  EXPECT_EQ(At(found.magnitude, 4, 3), 21);  // 0.7 * 30
  EXPECT_EQ(found.At(4, 3)->direction, 192);
  EXPECT_EQ(found.At(4, 5)->direction, 64);
}

TEST_P(EdgeCandidatesTest, TheMeanIsRoundedDown) {
  // A step of 26 smooths to 26/3 = 8, 52/3 = 17, 26: gradients 8, 17, 18, 9.
  const Grid step = Painted(12, 8, [](int x, int) { return x < 6 ? 0 : 26; });
  const EdgeCandidates found = Find(step, 0);
  EXPECT_EQ(At(found.magnitude, 4, 3), 5);   // 5.6
  EXPECT_EQ(At(found.magnitude, 5, 3), 11);  // 11.9
  EXPECT_EQ(At(found.magnitude, 6, 3), 12);  // 12.6
  EXPECT_EQ(At(found.magnitude, 7, 3), 6);   // 6.3
}

TEST_P(EdgeCandidatesTest, VerticalSumsAreHalvedTowardZeroTwice) {
  // 27 more at (8, 5) raise one smoothed diagonal neighbour of (6, 3), the lower right one, by 3:
  // the vertical sum is -3, halved -1, and for the direction halved again 0. Rounding either down
  // would end at -1 and code 254.
  Grid step = VerticalStep();
  At(step, 8, 5) += 27;
  const EdgeCandidates found = Find(step, 1);
  EXPECT_EQ(found.At(6, 3)->direction, 0);
  EXPECT_EQ(At(found.magnitude, 6, 3), 46);  // horizontal: (99 + 102 - 33 - 33) / 2 = 67
}

TEST_P(EdgeCandidatesTest, HorizontalSumsAreHalvedTowardZeroTwice) {
  // The same rotated: dark above, bright below, and the sum across is -3.
  Grid step = Painted(8, 12, [](int, int y) { return y < 6 ? 0 : 99; });
  At(step, 1, 8) += 27;  // raises the lower left neighbour of (3, 6)
  EXPECT_EQ(Find(step, 1).At(3, 6)->direction, 192);
}

TEST_P(EdgeCandidatesTest, AnOddNegativeGradientIsHalvedTowardZeroForTheDirection) {
  // 54 more raise the neighbour by 6: -6 / 2 = -3, halved again -1. Along the other axis
  // (99 + 105 - 66) / 2 = 69, halved 34. atan(1 / 34) is 1.2 codes; halving -3 to -2 would give 2.4.
  Grid vertical = VerticalStep();
  At(vertical, 8, 5) += 54;
  EXPECT_EQ(Find(vertical, 1).At(6, 3)->direction, 254);  // 256 - 1.2
  Grid horizontal = Painted(8, 12, [](int, int y) { return y < 6 ? 0 : 99; });
  At(horizontal, 1, 8) += 54;
  EXPECT_EQ(Find(horizontal, 1).At(3, 6)->direction, 190);  // 192 - 1.2
}

TEST_P(EdgeCandidatesTest, CodesJustBelowAFullTurnAreInTheFirstSector) {
  for (int more = 36; more <= 156; more += 12) {
    Grid step = VerticalStep();
    At(step, 8, 5) += more;
    const EdgeCandidates found = Find(step, 1);
    ASSERT_GE(found.At(6, 3)->direction, 240) << more;
    EXPECT_EQ(found.At(6, 3)->sector, 0) << more;
  }
}

TEST_P(EdgeCandidatesTest, SectorsChangeAtCodes16And48) {
  constexpr unsigned kSeed = 3;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  UniformRandom random(kSeed);
  std::vector<int> times_seen(256);
  for (int i = 0; i < 20; ++i) {
    const Grid noise = Painted(60, 60, [&](int, int) { return Below(random, 256); });
    for (const EdgeCandidate& c : Find(noise, 1).list) {
      ++times_seen[static_cast<std::size_t>(c.direction)];
      const int code = c.direction;
      const int in_half_turn = code % 128;
      const int sector = in_half_turn < 16 || in_half_turn >= 112 ? 0
                         : in_half_turn < 48                      ? 1
                         : in_half_turn < 80                      ? 2
                                                                  : 3;
      ASSERT_EQ(c.sector, sector) << code;
    }
  }
  for (const int bound : {0, 15, 16, 47, 48, 79, 80, 111, 112, 128, 143, 144, 239, 240})
    EXPECT_GT(times_seen[static_cast<std::size_t>(bound)], 0) << bound;
}

TEST_P(EdgeCandidatesTest, NoColumnIsLeftInNarrowImages) {
  for (int width = 1; width <= 4; ++width) {
    const Grid noise = Painted(width, 9, [](int x, int y) { return 40 * (x + y) % 256; });
    EXPECT_TRUE(Find(noise, 0).list.empty()) << width;
  }
}

}  // namespace
}  // namespace orvandel::test
