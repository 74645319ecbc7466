#include "orvandel/classic/sub_canny.h"

#include <cstdint>
#include <limits>
#include <thread>
#include <vector>

#include <gtest/gtest.h>

#include "orvandel/classic/edge_record.h"
#include "tests/reference/sub_canny.h"
#include "tests/support/image_patterns.h"

namespace orvandel::test {
namespace {

int NumValid(const CEdgeImgComplement& edges) {
  int valid = 0;
  for (int cell = 0; cell < edges.map_size; ++cell)
    valid += edges.valid[cell];
  return valid;
}

TEST(SubCanny, AnImageOfHeight4IsLeftAsItIsAndSoAreTheEdges) {
  for (int height = 1; height <= 4; ++height) {
    const Grid noise = Painted(12, height, [](int x, int y) { return (37 * x + 91 * y) % 256; });
    const ImagePtr image = ImageOf(noise);
    CEdgeImgComplement edges;
    ASSERT_EQ(edges.SetSize(12, height), 0);
    edges.Store(3.25, 0.5, 1.5);
    EXPECT_EQ(SubCanny(image.get(), 1, &edges), 0);
    EXPECT_EQ(GridOf(*image), noise) << height;
    EXPECT_EQ(NumValid(edges), 1);
    EXPECT_EQ(edges.x[3], 3.25);
    EXPECT_EQ(edges.y[3], 0.5);
    EXPECT_EQ(edges.g[3], 1.5);
    EXPECT_EQ(edges.count, 1);
  }
}

TEST(SubCanny, AnImageUnder5PixelsWideIsClearedAndSoIsThePresence) {
  for (int width = 1; width <= 4; ++width) {
    const ImagePtr image =
        MakeImage(width, 12, [](int x, int y) { return (37 * x + 91 * y) % 256; });
    CEdgeImgComplement edges;
    ASSERT_EQ(edges.SetSize(width, 12), 0);
    edges.Store(0.5, 7.5, 1.5);
    EXPECT_EQ(SubCanny(image.get(), -5, &edges), 0);
    EXPECT_EQ(GridOf(*image), MakeGrid(width, 12)) << width;
    EXPECT_EQ(NumValid(edges), 0);
    EXPECT_EQ(edges.count, 1);
  }
}

TEST(SubCanny, AUniformImageGivesNothingWhateverTheThreshold) {
  for (const int threshold : {-5, 0, 1, 252, 1000}) {
    const ImagePtr image = MakeImage(20, 10, [](int, int) { return 200; });
    CEdgeImgComplement edges;
    ASSERT_EQ(edges.SetSize(20, 10), 0);
    edges.Store(4.5, 4.5, 1.5);
    EXPECT_EQ(SubCanny(image.get(), threshold, &edges), 0);
    EXPECT_EQ(GridOf(*image), MakeGrid(20, 10)) << threshold;
    EXPECT_EQ(NumValid(edges), 0);
  }
}

TEST(SubCanny, TheMapHas255OnEveryStoredPointAnd0Elsewhere) {
  constexpr unsigned kSeed = 21;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  UniformRandom random(kSeed);
  const ImagePtr image = ImageOf(Blobs(50, 40, random));
  CEdgeImgComplement edges;
  ASSERT_EQ(edges.SetSize(50, 40), 0);
  SubCanny(image.get(), 5, &edges);
  int num_points = 0;
  for (int y = 0; y < 40; ++y) {
    for (int x = 0; x < 50; ++x) {
      ASSERT_EQ(image->row[y][x], edges.valid[y * 50 + x] ? 255 : 0) << x << ' ' << y;
      num_points += edges.valid[y * 50 + x];
    }
  }
  EXPECT_GT(num_points, 50);
  EXPECT_EQ(edges.count, num_points);
}

TEST(SubCanny, NoPointLiesInTheTwoOutermostRowsAndColumns) {
  constexpr unsigned kSeed = 22;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  UniformRandom random(kSeed);
  for (const NamedGrid& pattern : ImagePatterns(30, 20, random)) {
    const ImagePtr image = ImageOf(pattern.grid);
    CEdgeImgComplement edges;
    ASSERT_EQ(edges.SetSize(30, 20), 0);
    SubCanny(image.get(), 0, &edges);
    for (int y = 0; y < 20; ++y) {
      for (int x = 0; x < 30; ++x) {
        if (x < 2 || y < 2 || x > 27 || y > 17) {
          EXPECT_EQ(image->row[y][x], 0) << pattern << ' ' << x << ' ' << y;
        }
      }
    }
  }
}

TEST(SubCanny, NothingReachesAThresholdAbove252) {
  constexpr unsigned kSeed = 23;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  UniformRandom random(kSeed);
  for (const int threshold : {253, 1000, std::numeric_limits<int>::max()}) {
    for (const NamedGrid& pattern : ImagePatterns(30, 20, random)) {
      const ImagePtr image = ImageOf(pattern.grid);
      CEdgeImgComplement edges;
      ASSERT_EQ(edges.SetSize(30, 20), 0);
      SubCanny(image.get(), threshold, &edges);
      EXPECT_EQ(GridOf(*image), MakeGrid(30, 20)) << pattern;
      EXPECT_EQ(edges.count, 0) << pattern;
    }
  }
}

TEST(SubCanny, ThresholdsOfZeroAndBelowActAlike) {
  constexpr unsigned kSeed = 24;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  UniformRandom random(kSeed);
  const Grid noise = Painted(40, 30, [&](int, int) { return Below(random, 256); });
  const auto map = [&](int threshold) {
    const ImagePtr image = ImageOf(noise);
    CEdgeImgComplement edges;
    EXPECT_EQ(edges.SetSize(40, 30), 0);
    SubCanny(image.get(), threshold, &edges);
    return GridOf(*image);
  };
  EXPECT_EQ(map(-5), map(0));
  EXPECT_EQ(map(std::numeric_limits<int>::min()), map(0));
}

/// 10 edge points: two columns beside the step, rows 2 to 6.
ImagePtr ImageOfTenPoints() {
  return MakeImage(12, 9, [](int x, int) { return x < 6 ? 0 : 99; });
}

TEST(SubCanny, CountGoesOnFromRunToRun) {
  CEdgeImgComplement edges;
  ASSERT_EQ(edges.SetSize(12, 9), 0);
  SubCanny(ImageOfTenPoints().get(), 10, &edges);
  EXPECT_EQ(edges.count, 10);
  SubCanny(ImageOfTenPoints().get(), 10, &edges);
  EXPECT_EQ(edges.count, 20);
  EXPECT_EQ(NumValid(edges), 10);
}

TEST(SubCanny, CountWrapsAround) {
  CEdgeImgComplement edges;
  ASSERT_EQ(edges.SetSize(12, 9), 0);
  edges.count = std::numeric_limits<std::int32_t>::max() - 3;
  SubCanny(ImageOfTenPoints().get(), 10, &edges);
  EXPECT_EQ(edges.count, std::numeric_limits<std::int32_t>::min() + 6);
}

TEST(SubCanny, ANullImageGivesZeroAndTouchesNothing) {
  CEdgeImgComplement edges;
  ASSERT_EQ(edges.SetSize(12, 9), 0);
  edges.Store(5.5, 5.5, 1.5);
  EXPECT_EQ(SubCanny(nullptr, 10, &edges), 0);
  EXPECT_EQ(NumValid(edges), 1);
  EXPECT_EQ(edges.count, 1);
}

TEST(SubCanny, ThePixelTypeIsNotLookedAt) {
  const ImagePtr image = ImageOfTenPoints();
  image->type = 7;
  CEdgeImgComplement edges;
  ASSERT_EQ(edges.SetSize(12, 9), 0);
  EXPECT_EQ(SubCanny(image.get(), 10, &edges), 0);
  EXPECT_EQ(edges.count, 10);
  image->type = 1;
}

TEST(SubCanny, SeveralThreadsMayDetectAtOnceWithDifferentThresholds) {
  constexpr unsigned kSeed = 25;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  UniformRandom random(kSeed);
  const std::vector<int> thresholds = {3, 10, 25, 60};
  const Grid scene = Blobs(90, 60, random);
  std::vector<int> mismatches(thresholds.size());
  std::vector<std::thread> threads;
  for (std::size_t i = 0; i < thresholds.size(); ++i) {
    threads.emplace_back([&, i] {
      const Grid expected = ReferenceEdgeMap(90, 60, ReferenceSubCanny(scene, thresholds[i]));
      for (int run = 0; run < 30; ++run) {
        const ImagePtr image = ImageOf(scene);
        CEdgeImgComplement edges;
        edges.SetSize(90, 60);
        SubCanny(image.get(), thresholds[i], &edges);
        mismatches[i] += GridOf(*image) != expected;
      }
    });
  }
  for (std::thread& thread : threads)
    thread.join();
  EXPECT_EQ(mismatches, std::vector<int>(thresholds.size()));
}

}  // namespace
}  // namespace orvandel::test
