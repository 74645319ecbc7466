#include "edges/edge_candidates.h"

#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "tests/edges/plain_sub_canny.h"
#include "tests/support/image_patterns.h"

namespace orvandel::test {
namespace {

struct Found {
  std::vector<EdgeCandidate> list;
  Grid magnitude;

  const EdgeCandidate* At(int x, int y) const {
    for (const EdgeCandidate& c : list) {
      if (c.x == x && c.y == y) return &c;
    }
    return nullptr;
  }
};

Found Find(const Grid& grid, int threshold) {
  const ImagePtr image = ImageOf(grid);
  const ImagePtr magnitude(im_create(1, image->width, image->height));
  Found found;
  found.list = FindEdgeCandidates(*image, threshold, *AcquireGradientTables(), *magnitude);
  found.magnitude = GridOf(*magnitude);
  return found;
}

/// 0 before column 6, 99 from there on. Smoothed: ... 0 33 66 99 ... in columns 4, 5, 6, 7, so the
/// horizontal gradient is 33 66 66 33 there and the magnitude 23 46 46 23.
Grid VerticalStep() {
  return Painted(12, 8, [](int x, int) { return x < 6 ? 0 : 99; });
}

TEST(EdgeCandidates, VerticalStepByHand) {
  const Found found = Find(VerticalStep(), 1);
  ASSERT_EQ(found.list.size(), 4u * 4u);  // columns 4..7, rows 2..5
  const int expected[12] = {0, 0, 0, 0, 23, 46, 46, 23, 0, 0, 0, 0};
  for (int y = 2; y <= 5; ++y) {
    for (int x = 0; x < 12; ++x)
      EXPECT_EQ(At(found.magnitude, x, y), expected[x]) << x << ' ' << y;
  }
}

TEST(EdgeCandidates, CodesFollowTheGradientTowardTheBrightSide) {
  const Grid left_dark = VerticalStep();
  const Grid right_dark = Painted(12, 8, [](int x, int) { return x < 6 ? 99 : 0; });
  const Grid top_dark = Painted(8, 12, [](int, int y) { return y < 6 ? 0 : 99; });
  const Grid bottom_dark = Painted(8, 12, [](int, int y) { return y < 6 ? 99 : 0; });
  const struct {
    const Grid& image;
    int direction, sector;
  } kCases[] = {{left_dark, 0, 0}, {right_dark, 128, 0}, {top_dark, 192, 2}, {bottom_dark, 64, 2}};
  for (const auto& c : kCases) {
    const Found found = Find(c.image, 1);
    EXPECT_EQ(found.list.size(), 16u);
    for (const EdgeCandidate& candidate : found.list) {
      EXPECT_EQ(candidate.direction, c.direction);
      EXPECT_EQ(candidate.sector, c.sector);
    }
  }
}

TEST(EdgeCandidates, ComeRowByRow) {
  const Found found = Find(VerticalStep(), 1);
  for (std::size_t i = 0; i < found.list.size(); ++i) {
    EXPECT_EQ(found.list[i].y, 2 + i / 4);
    EXPECT_EQ(found.list[i].x, 4 + i % 4);
  }
}

TEST(EdgeCandidates, TheThresholdItselfIsKept) {
  EXPECT_EQ(Find(VerticalStep(), 46).list.size(), 2u * 4u);
  EXPECT_EQ(Find(VerticalStep(), 47).list.size(), 0u);
}

TEST(EdgeCandidates, AMagnitudeBelowTheThresholdIsNotWritten) {
  const Found found = Find(VerticalStep(), 24);
  EXPECT_EQ(At(found.magnitude, 4, 3), 0);
  EXPECT_EQ(At(found.magnitude, 5, 3), 46);
  EXPECT_EQ(At(found.magnitude, 7, 3), 0);
}

TEST(EdgeCandidates, WithoutThresholdEveryInnerPixelOfAFlatImageIsOne) {
  const Grid flat = Painted(9, 7, [](int, int) { return 80; });
  for (const int threshold : {0, -5}) {
    const Found found = Find(flat, threshold);
    ASSERT_EQ(found.list.size(), 5u * 3u);  // columns 2..6, rows 2..4
    EXPECT_EQ(found.list.front().x, 2);
    EXPECT_EQ(found.list.front().y, 2);
    EXPECT_EQ(found.list.back().x, 6);
    EXPECT_EQ(found.list.back().y, 4);
  }
  EXPECT_TRUE(Find(flat, 1).list.empty());
}

TEST(EdgeCandidates, TheStrongestStraightStepHasMagnitude118) {
  // Smoothed 0 85 170 255: gradient 170, times 0.7 is 118.99...
  const Grid step = Painted(12, 8, [](int x, int) { return x < 6 ? 0 : 255; });
  EXPECT_EQ(Find(step, 118).list.size(), 2u * 4u);
  EXPECT_EQ(Find(step, 119).list.size(), 0u);
}

TEST(EdgeCandidates, OnlyTheFourDiagonalNeighboursEnterTheGradient) {
  // One row of 90 among 0: smoothed 30 in rows 3, 4 and 5. In row 4 the rows above and below are
  // equal, so there is no gradient at all; in row 3 it is (0 + 0 - 30 - 30) / 2.
  const Grid line = Painted(9, 9, [](int, int y) { return y == 4 ? 90 : 0; });
  const Found found = Find(line, 0);
  EXPECT_EQ(At(found.magnitude, 4, 4), 0);
  EXPECT_EQ(At(found.magnitude, 4, 3), 21);  // 0.7 * 30
  EXPECT_EQ(found.At(4, 3)->direction, 192);
  EXPECT_EQ(found.At(4, 5)->direction, 64);
}

TEST(EdgeCandidates, TheMeanIsRoundedDown) {
  // A step of 26 smooths to 26/3 = 8, 52/3 = 17, 26: gradients 8, 17, 18, 9.
  const Grid step = Painted(12, 8, [](int x, int) { return x < 6 ? 0 : 26; });
  const Found found = Find(step, 0);
  EXPECT_EQ(At(found.magnitude, 4, 3), 5);   // 5.6
  EXPECT_EQ(At(found.magnitude, 5, 3), 11);  // 11.9
  EXPECT_EQ(At(found.magnitude, 6, 3), 12);  // 12.6
  EXPECT_EQ(At(found.magnitude, 7, 3), 6);   // 6.3
}

TEST(EdgeCandidates, VerticalSumsAreHalvedTowardZeroTwice) {
  // 27 more at (8, 5) raise one smoothed diagonal neighbour of (6, 3), the lower right one, by 3:
  // the vertical sum is -3, halved -1, and for the direction halved again 0. Rounding either down
  // would end at -1 and code 254.
  Grid step = VerticalStep();
  At(step, 8, 5) += 27;
  const Found found = Find(step, 1);
  EXPECT_EQ(found.At(6, 3)->direction, 0);
  EXPECT_EQ(At(found.magnitude, 6, 3), 46);  // horizontal: (99 + 102 - 33 - 33) / 2 = 67
}

TEST(EdgeCandidates, HorizontalSumsAreHalvedTowardZeroTwice) {
  // The same turned: dark above, bright below, and the sum across is -3.
  Grid step = Painted(8, 12, [](int, int y) { return y < 6 ? 0 : 99; });
  At(step, 1, 8) += 27;  // raises the lower left neighbour of (3, 6)
  EXPECT_EQ(Find(step, 1).At(3, 6)->direction, 192);
}

TEST(EdgeCandidates, AnOddNegativeGradientIsHalvedTowardZeroForTheDirection) {
  // 54 more raise the neighbour by 6: -6 / 2 = -3, halved again -1. Along the other axis
  // (99 + 105 - 66) / 2 = 69, halved 34. atan(1 / 34) is 1.2 codes; halving -3 to -2 would give 2.4.
  Grid vertical = VerticalStep();
  At(vertical, 8, 5) += 54;
  EXPECT_EQ(Find(vertical, 1).At(6, 3)->direction, 254);  // 256 - 1.2
  Grid horizontal = Painted(8, 12, [](int, int y) { return y < 6 ? 0 : 99; });
  At(horizontal, 1, 8) += 54;
  EXPECT_EQ(Find(horizontal, 1).At(3, 6)->direction, 190);  // 192 - 1.2
}

TEST(EdgeCandidates, CodesJustBelowAFullTurnAreInTheFirstSector) {
  for (int more = 36; more <= 156; more += 12) {
    Grid step = VerticalStep();
    At(step, 8, 5) += more;
    const Found found = Find(step, 1);
    ASSERT_GE(found.At(6, 3)->direction, 240) << more;
    EXPECT_EQ(found.At(6, 3)->sector, 0) << more;
  }
}

TEST(EdgeCandidates, SectorsChangeAtCodes16And48) {
  constexpr unsigned kSeed = 3;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  UniformRandom random(kSeed);
  std::vector<int> times_seen(256);
  for (int i = 0; i < 20; ++i) {
    const Grid noise = Painted(60, 60, [&](int, int) { return Below(random, 256); });
    for (const EdgeCandidate& c : Find(noise, 1).list) {
      ++times_seen[c.direction];
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

TEST(EdgeCandidates, NoColumnIsLeftInNarrowImages) {
  for (int width = 1; width <= 4; ++width) {
    const Grid noise = Painted(width, 9, [](int x, int y) { return 40 * (x + y) % 256; });
    EXPECT_TRUE(Find(noise, 0).list.empty()) << width;
  }
}

}  // namespace
}  // namespace orvandel::test
