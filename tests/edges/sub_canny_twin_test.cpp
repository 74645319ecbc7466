#include <vector>

#include <gtest/gtest.h>

#include "contours/edge_record.h"
#include "edges/edge_candidates.h"
#include "edges/sub_canny.h"
#include "tests/edges/plain_sub_canny.h"
#include "tests/support/image_patterns.h"

// The detector against its readable second formulation, bit for bit.
namespace orvandel::test {
namespace {

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

  const std::vector<PlainEdgePoint> points = PlainSubCanny(pattern.grid, threshold);
  const Grid map = PlainEdgeMap(width, height, points);
  ASSERT_EQ(GridOf(*image), height < 5 ? pattern.grid : map);
  ASSERT_EQ(edges.count, static_cast<int>(points.size()));
  for (int cell = 0; cell < width * height; ++cell)
    ASSERT_EQ(edges.valid[cell], At(map, cell % width, cell / width) / 255) << cell;
  for (const PlainEdgePoint& p : points) {
    const int cell = p.y * width + p.x;
    ASSERT_EQ(edges.x[cell], PlainX(p)) << p.x << ' ' << p.y;
    ASSERT_EQ(edges.y[cell], PlainY(p)) << p.x << ' ' << p.y;
    ASSERT_EQ(edges.g[cell], PlainAngle(p)) << p.x << ' ' << p.y;
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

TEST(SubCannyTwin, EverySmallSize) {
  constexpr unsigned kSeed = 1;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  UniformRandom random(kSeed);
  for (int height = 1; height <= 12; ++height) {
    for (int width = 1; width <= 12; ++width)
      ExpectSameEdgesForAllPatterns(width, height, random);
  }
}

TEST(SubCannyTwin, EveryWidthBelowAtAndBeyondWholeVectors) {
  constexpr unsigned kSeed = 2;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  UniformRandom random(kSeed);
  for (int width = 1; width <= 70; ++width)
    ExpectSameEdgesForAllPatterns(width, 5 + width % 4, random);
}

TEST(SubCannyTwin, TallAndLargeImages) {
  constexpr unsigned kSeed = 3;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  UniformRandom random(kSeed);
  ExpectSameEdgesForAllPatterns(5, 200, random);
  ExpectSameEdgesForAllPatterns(6, 70, random);
  ExpectSameEdgesForAllPatterns(161, 119, random);
}

TEST(SubCannyTwin, RandomSizes) {
  constexpr unsigned kSeed = 4;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  UniformRandom random(kSeed);
  for (int i = 0; i < 60; ++i) {
    const int width = 1 + Below(random, 60);
    const int height = 1 + Below(random, 40);
    ExpectSameEdgesForAllPatterns(width, height, random);
  }
}

TEST(SubCannyTwin, CandidatesCarryTheSameMagnitudesDirectionsAndSectors) {
  constexpr unsigned kSeed = 5;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  UniformRandom random(kSeed);
  for (int width = 1; width <= 40; ++width) {
    const int height = 5 + Below(random, 12);
    for (const NamedGrid& pattern : ImagePatterns(width, height, random)) {
      for (const int threshold : kThresholds) {
        const ImagePtr image = ImageOf(pattern.grid);
        const ImagePtr magnitude(im_create(1, width, height));
        const std::vector<EdgeCandidate> found =
            FindEdgeCandidates(*image, threshold, *AcquireGradientTables(), *magnitude);
        const PlainCandidates expected = PlainFindCandidates(pattern.grid, threshold);
        ASSERT_EQ(GridOf(*magnitude), expected.magnitude) << pattern << ' ' << threshold;
        ASSERT_EQ(GridOf(*image), pattern.grid);
        ASSERT_EQ(found.size(), expected.list.size()) << pattern << ' ' << threshold;
        for (std::size_t i = 0; i < found.size(); ++i) {
          ASSERT_EQ(found[i].x, expected.list[i].x);
          ASSERT_EQ(found[i].y, expected.list[i].y);
          ASSERT_EQ(found[i].direction, expected.list[i].direction);
          ASSERT_EQ(found[i].sector, expected.list[i].sector);
        }
      }
    }
  }
}

}  // namespace
}  // namespace orvandel::test
