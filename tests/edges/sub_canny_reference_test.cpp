#include <algorithm>
#include <cstdlib>
#include <vector>

#include <gtest/gtest.h>

#include "orvandel/classic/edge_record.h"
#include "orvandel/classic/sub_canny.h"
#include "tests/edges/kernel_runs.h"
#include "tests/reference/sub_canny.h"
#include "tests/support/image_patterns.h"
#include "tests/support/simd_levels.h"

// The detector against its readable second formulation, bit for bit.
namespace orvandel::test {
namespace {

using SubCannyReference = AtEverySimdLevel;
ORVANDEL_AT_EVERY_SIMD_LEVEL(SubCannyReference);

constexpr int kThresholds[] = {-5, 0, 1, 4, 16, 60, 118, 119, 252, 253, 1000};

/// Runs both on a copy of the image and compares map, presence, positions and directions.
void ExpectSameEdges(const NamedGrid& pattern, int threshold) {
  SCOPED_TRACE(testing::Message() << pattern << ", threshold " << threshold);
  const int width = Width(pattern.grid);
  const int height = Height(pattern.grid);
  const ImagePtr image = ImageOf(pattern.grid);
  CEdgeImgComplement edges;
  ASSERT_EQ(edges.SetSize(width, height), 0);
  ASSERT_EQ(SubCanny(image.get(), threshold, &edges), 0);

  const std::vector<ReferenceEdgePoint> points = ReferenceSubCanny(pattern.grid, threshold);
  const Grid map = ReferenceEdgeMap(width, height, points);
  ASSERT_EQ(GridOf(*image), height < 5 ? pattern.grid : map);
  ASSERT_EQ(edges.count, static_cast<int>(points.size()));
  for (int cell = 0; cell < width * height; ++cell)
    ASSERT_EQ(edges.valid[cell], At(map, cell % width, cell / width) / 255) << cell;
  for (const ReferenceEdgePoint& p : points) {
    const int cell = p.y * width + p.x;
    ASSERT_EQ(edges.x[cell], ReferenceX(p)) << p.x << ' ' << p.y;
    ASSERT_EQ(edges.y[cell], ReferenceY(p)) << p.x << ' ' << p.y;
    ASSERT_EQ(edges.g[cell], ReferenceAngle(p)) << p.x << ' ' << p.y;
  }
}

void ExpectSameEdgesForAllPatterns(int width, int height, UniformRandom& random) {
  for (const NamedGrid& pattern : ImagePatterns(width, height, random)) {
    for (const int threshold : kThresholds) {
      ExpectSameEdges(pattern, threshold);
      if (testing::Test::HasFatalFailure()) return;  // one report is enough
    }
  }
}

TEST_P(SubCannyReference, EverySmallSize) {
  constexpr unsigned kSeed = 1;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  UniformRandom random(kSeed);
  for (int height = 1; height <= 12; ++height) {
    for (int width = 1; width <= 12; ++width)
      ExpectSameEdgesForAllPatterns(width, height, random);
  }
}

TEST_P(SubCannyReference, EveryWidthBelowAtAndBeyondWholeVectors) {
  constexpr unsigned kSeed = 2;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  UniformRandom random(kSeed);
  for (int width = 1; width <= 70; ++width)
    ExpectSameEdgesForAllPatterns(width, 5 + width % 4, random);
  for (const int width : {127, 128, 129, 130, 191, 193})
    ExpectSameEdgesForAllPatterns(width, 7, random);
}

TEST_P(SubCannyReference, TallAndLargeImages) {
  constexpr unsigned kSeed = 3;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  UniformRandom random(kSeed);
  ExpectSameEdgesForAllPatterns(5, 200, random);
  ExpectSameEdgesForAllPatterns(6, 70, random);
  ExpectSameEdgesForAllPatterns(161, 119, random);
}

TEST_P(SubCannyReference, RandomSizes) {
  constexpr unsigned kSeed = 4;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  UniformRandom random(kSeed);
  for (int i = 0; i < 60; ++i) {
    const int width = 1 + Below(random, 60);
    const int height = 1 + Below(random, 40);
    ExpectSameEdgesForAllPatterns(width, height, random);
  }
}

TEST_P(SubCannyReference, CandidatesCarryTheSameMagnitudesDirectionsAndSectors) {
  constexpr unsigned kSeed = 5;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  UniformRandom random(kSeed);
  for (int width = 1; width <= 40; ++width) {
    const int height = 5 + Below(random, 12);
    for (const NamedGrid& pattern : ImagePatterns(width, height, random)) {
      for (const int threshold : kThresholds) {
        const EdgeCandidates found =
            FindEdgeCandidates(*ImageOf(pattern.grid), threshold, RowKernelsOf(ActiveSimdLevel()));
        ReferenceCandidates expected = ReferenceFindCandidates(pattern.grid, threshold);
        std::erase_if(expected.list, [&](const ReferenceCandidate& c) {
          return At(expected.magnitude, c.x, c.y) == 0;
        });
        ASSERT_EQ(found.magnitude, expected.magnitude) << pattern << ' ' << threshold;
        ASSERT_EQ(found.list.size(), expected.list.size()) << pattern << ' ' << threshold;
        for (std::size_t i = 0; i < found.list.size(); ++i) {
          ASSERT_EQ(found.list[i].x, expected.list[i].x);
          ASSERT_EQ(found.list[i].y, expected.list[i].y);
          ASSERT_EQ(found.list[i].direction, expected.list[i].direction);
          ASSERT_EQ(found.list[i].sector, expected.list[i].sector);
        }
      }
    }
  }
}

TEST_P(SubCannyReference, MagnitudeAndSectorOfEveryGradient) {
  // Rows of smoothed values that give each pair of components in turn at column x: the rows differ in
  // one diagonal by `falling`, in the other by `rising`.
  const RowKernels& kernels = RowKernelsOf(ActiveSimdLevel());
  constexpr std::size_t kWidth = 4 * 511;
  PaddedRow above(kWidth), below(kWidth), magnitude(kWidth), sector(kWidth);
  for (int falling = -255; falling <= 255; ++falling) {
    for (int rising = -255; rising <= 255; ++rising) {
      const std::size_t x = static_cast<std::size_t>(4 * (rising + 255)) + 1;
      above.data()[x - 1] = static_cast<std::uint8_t>(std::max(falling, 0));
      below.data()[x + 1] = static_cast<std::uint8_t>(std::max(-falling, 0));
      above.data()[x + 1] = static_cast<std::uint8_t>(std::max(rising, 0));
      below.data()[x - 1] = static_cast<std::uint8_t>(std::max(-rising, 0));
    }
    kernels.gradient_row(above.data(), below.data(), kWidth, LimitsOf(0), magnitude.data(),
                         sector.data());
    for (int rising = -254; rising <= 254; ++rising) {
      const std::size_t x = static_cast<std::size_t>(4 * (rising + 255)) + 1;
      const int gv = (rising + falling) / 2;
      const int gh = (rising - falling) / 2;
      ASSERT_EQ(magnitude.data()[x], ReferenceMagnitude(std::abs(gv), std::abs(gh)))
          << gv << ' ' << gh;
      ASSERT_EQ(sector.data()[x], (ReferenceDirectionCode(gh / 2, gv / 2) + 16) / 32 % 4)
          << gv << ' ' << gh;
    }
  }
}

}  // namespace
}  // namespace orvandel::test
