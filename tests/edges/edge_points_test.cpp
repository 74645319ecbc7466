#include "edges/edge_points.h"

#include <algorithm>
#include <array>
#include <optional>
#include <vector>

#include <gtest/gtest.h>

#include "tests/edges/kernel_runs.h"
#include "tests/support/simd_levels.h"

namespace orvandel::test {
namespace {

using EdgePointsTest = AtEverySimdLevel;
ORVANDEL_AT_EVERY_SIMD_LEVEL(EdgePointsTest);

std::optional<EdgePoint> Locate(int sector, const Grid& neighbourhood) {
  return LocatePeak(sector, neighbourhood, RowKernelsOf(ActiveSimdLevel()));
}

/// The magnitudes m1, m, m2 along x.
std::optional<EdgePoint> LocateAlongX(int m1, int m, int m2) {
  return Locate(0, {{0, 0, 0}, {m1, m, m2}, {0, 0, 0}});
}

TEST_P(EdgePointsTest, EqualNeighboursGiveNoShift) {
  const auto point = LocateAlongX(20, 50, 20);
  ASSERT_TRUE(point);
  EXPECT_EQ(point->sub_x, 127);
  EXPECT_EQ(point->sub_y, 127);
}

TEST_P(EdgePointsTest, KeepTheColumnOfTheirPeak) {
  const auto point = LocateAlongX(20, 50, 20);
  ASSERT_TRUE(point);
  EXPECT_EQ(point->column, 1);
}

TEST_P(EdgePointsTest, TheShiftIsTruncatedTowardZeroOnBothSides) {
  // Curvature 2 * (100 - 40 - 33) = 54; 7 * 256 / 54 = 33.2.
  EXPECT_EQ(LocateAlongX(40, 50, 33)->sub_x, 127 - 33);
  EXPECT_EQ(LocateAlongX(33, 50, 40)->sub_x, 127 + 33);
}

TEST_P(EdgePointsTest, EachSectorLooksAcrossItsEdge) {
  // Only the pair that the sector names holds 33 and 40; all others would suppress the point.
  const auto shift = [](int sector, const Grid& m) {
    const auto point = Locate(sector, m);
    return point ? std::array{point->sub_x - 127, point->sub_y - 127} : std::array{999, 999};
  };
  EXPECT_EQ(shift(0, {{99, 99, 99}, {33, 50, 40}, {99, 99, 99}}), (std::array{33, 0}));
  EXPECT_EQ(shift(1, {{99, 99, 33}, {99, 50, 99}, {40, 99, 99}}), (std::array{-33, 33}));
  EXPECT_EQ(shift(2, {{99, 33, 99}, {99, 50, 99}, {99, 40, 99}}), (std::array{0, 33}));
  EXPECT_EQ(shift(3, {{33, 99, 99}, {99, 50, 99}, {99, 99, 40}}), (std::array{33, 33}));
}

TEST_P(EdgePointsTest, NoCurvatureOrHollowIsDropped) {
  EXPECT_FALSE(LocateAlongX(0, 0, 0));
  EXPECT_FALSE(LocateAlongX(50, 50, 50));
  EXPECT_FALSE(LocateAlongX(40, 50, 60));
  EXPECT_FALSE(LocateAlongX(60, 50, 60));
  EXPECT_FALSE(LocateAlongX(252, 0, 252));
}

TEST_P(EdgePointsTest, AnEqualNeighbourPutsTheVertexHalfAPixelAwayWhichIsKept) {
  // 2 * (100 - 30 - 50) = 40; 20 * 256 / 40 = 128.
  EXPECT_EQ(LocateAlongX(30, 50, 50)->sub_x, 255);
  EXPECT_EQ(LocateAlongX(0, 252, 252)->sub_x, 255);
  EXPECT_EQ(LocateAlongX(251, 252, 252)->sub_x, 255);
}

TEST_P(EdgePointsTest, ALargerNeighbourPutsTheVertexFurtherAndIsDropped) {
  EXPECT_FALSE(LocateAlongX(10, 50, 51));   // 2 * (100 - 10 - 51) = 78; 41 * 256 / 78 = 134
  EXPECT_FALSE(LocateAlongX(51, 50, 10));   // -134
  EXPECT_FALSE(LocateAlongX(0, 251, 252));  // 500; 252 * 256 / 500 = 129: the closest there is
}

TEST_P(EdgePointsTest, HalfAPixelBackIsStoredAsZeroInEverySector) {
  // off = -128: off + 127 is -1. In sector 1 it is 127 - off = 255 along x and -1 along y.
  EXPECT_EQ(LocateAlongX(50, 50, 30)->sub_x, 0);
  const auto up = Locate(2, {{0, 50, 0}, {0, 50, 0}, {0, 30, 0}});
  EXPECT_EQ(up->sub_x, 127);
  EXPECT_EQ(up->sub_y, 0);
  const auto rising = Locate(1, {{0, 0, 50}, {0, 50, 0}, {30, 0, 0}});
  EXPECT_EQ(rising->sub_x, 255);
  EXPECT_EQ(rising->sub_y, 0);
  const auto falling = Locate(3, {{50, 0, 0}, {0, 50, 0}, {0, 0, 30}});
  EXPECT_EQ(falling->sub_x, 0);
  EXPECT_EQ(falling->sub_y, 0);
}

TEST_P(EdgePointsTest, HalfAPixelOnIsStoredAsZeroAlongXInTheRisingSector) {
  const auto point = Locate(1, {{0, 0, 30}, {0, 50, 0}, {50, 0, 0}});
  ASSERT_TRUE(point);
  EXPECT_EQ(point->sub_x, 0);  // 127 - 128
  EXPECT_EQ(point->sub_y, 255);
}

TEST_P(EdgePointsTest, EveryTripleOfMagnitudesFollowsTheParabola) {
  // The vertex of the parabola through (-1, m1), (0, m), (1, m2) is (m2 - m1) / (2 (2m - m1 - m2)).
  for (int m = 0; m <= 252; m += 7) {
    for (int m1 = 0; m1 <= 252; m1 += 3) {
      for (int m2 = 0; m2 <= 252; m2 += 3) {
        const auto point = LocateAlongX(m1, m, m2);
        const int curvature = 2 * m - m1 - m2;
        const double vertex = curvature > 0 ? 128.0 * (m2 - m1) / curvature : 1000.0;
        ASSERT_EQ(point.has_value(), vertex > -129 && vertex < 129) << m1 << ' ' << m << ' ' << m2;
        if (!point) continue;
        const int off = static_cast<int>(vertex);
        ASSERT_EQ(point->sub_x, off == -128 ? 0 : 127 + off) << m1 << ' ' << m << ' ' << m2;
      }
    }
  }
}

TEST(CollectPeaks, FindsEachSetByteInOrder) {
  constexpr std::size_t kWidth = 150;
  for (const std::size_t spacing : {1u, 2u, 7u, 8u, 63u, 64u, 149u}) {
    std::vector<std::uint8_t> peaks(kWidth + kBlock);
    std::fill(peaks.begin() + kWidth, peaks.end(), std::uint8_t{255});  // are none of the row's
    std::vector<std::uint16_t> expected;
    for (std::size_t x = 0; x < kWidth; x += spacing) {
      peaks[x] = 255;
      expected.push_back(static_cast<std::uint16_t>(x));
    }
    std::vector<std::uint16_t> columns(kWidth);
    columns.resize(CollectPeaks(peaks.data(), kWidth, columns.data()));
    EXPECT_EQ(columns, expected) << spacing;
  }
}

}  // namespace
}  // namespace orvandel::test
