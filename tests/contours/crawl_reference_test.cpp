#include <vector>

#include <gtest/gtest.h>

#include "orvandel/classic/ctd.h"
#include "orvandel/classic/edge_record.h"
#include "tests/reference/crawl.h"
#include "tests/reference/sub_canny.h"
#include "tests/support/image_patterns.h"

// Images to contours against the readable second formulations of both steps, bit for bit.
namespace orvandel::test {
namespace {

struct SizeLimits {
  int threshold = 0;
  int min_size = 1;
  int max_size = 100000;
};

/// Crawls into a set that may have been used before, as hosts do.
void ExpectSameCrawl(const ContourHandle& set, const NamedGrid& pattern,
                     const SizeLimits& options) {
  SCOPED_TRACE(testing::Message() << pattern << ", threshold " << options.threshold);
  const int width = Width(pattern.grid);
  const int height = Height(pattern.grid);
  const ImagePtr image = ImageOf(pattern.grid);
  ASSERT_EQ(
      ctd_crawl(set.get(), image.get(), options.threshold, options.min_size, options.max_size), 0);

  Grid map = pattern.grid;
  CEdgeImgComplement edges;
  ASSERT_EQ(edges.SetSize(width, height), 0);
  if (height >= 5) {
    const std::vector<ReferenceEdgePoint> points =
        ReferenceSubCanny(pattern.grid, options.threshold);
    map = ReferenceEdgeMap(width, height, points);
    for (const ReferenceEdgePoint& p : points)
      edges.Store(ReferenceX(p), ReferenceY(p), ReferenceAngle(p));
  }
  const std::vector<TestContour> expected =
      ReferenceTrace(map, &edges, options.min_size, options.max_size);

  ASSERT_EQ(GridOf(*image), map);
  ASSERT_EQ(ctd_contour_count(set.get()), static_cast<int>(expected.size()));
  int num_points = 0;
  for (int i = 0; i < ctd_contour_count(set.get()); ++i) {
    const TestContour& contour = expected[static_cast<std::size_t>(i)];
    ASSERT_EQ(Fields(set).contours[i].start, num_points);
    ASSERT_EQ(ctd_contour_size(set.get(), i), static_cast<int>(contour.points.size()));
    ASSERT_EQ(ctd_contour_closed(set.get(), i), contour.closed ? 1 : 0);
    for (int k = 0; k < ctd_contour_size(set.get(), i); ++k) {
      const TestPoint& p = contour.points[static_cast<std::size_t>(k)];
      ASSERT_EQ(ctd_contour_x(set.get(), i, k), p.x);
      ASSERT_EQ(ctd_contour_y(set.get(), i, k), p.y);
      ASSERT_EQ(ctd_contour_g(set.get(), i, k), p.g);
      ASSERT_EQ(ctd_contour_f(set.get(), i, k), 0u);
    }
    num_points += ctd_contour_size(set.get(), i);
  }
  ASSERT_EQ(ctd_point_count(set.get()), num_points);
  ASSERT_EQ(Fields(set).point_capacity, num_points);
  ASSERT_EQ(Fields(set).contour_capacity, static_cast<int>(expected.size()));
}

TEST(CrawlReference, EverySmallSize) {
  constexpr unsigned kSeed = 51;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  UniformRandom random(kSeed);
  for (int height = 1; height <= 12; ++height) {
    for (int width = 1; width <= 12; ++width) {
      for (const NamedGrid& pattern : ImagePatterns(width, height, random)) {
        ExpectSameCrawl(MakeEmptySet(), pattern, {.threshold = Below(random, 12) - 2});
        if (testing::Test::HasFatalFailure()) return;  // one report is enough
      }
    }
  }
}

TEST(CrawlReference, OneSetForImagesOfChangingSize) {
  constexpr unsigned kSeed = 52;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  UniformRandom random(kSeed);
  const ContourHandle set = MakeEmptySet();
  for (int i = 0; i < 40; ++i) {
    const int width = 1 + Below(random, 80);
    const int height = 5 + Below(random, 60);
    for (const NamedGrid& pattern : ImagePatterns(width, height, random)) {
      const int min_size = 1 + Below(random, 20);
      ExpectSameCrawl(set, pattern,
                      {.threshold = Below(random, 40),
                       .min_size = min_size,
                       .max_size = min_size + Below(random, 100)});
      if (testing::Test::HasFatalFailure()) return;
    }
  }
}

TEST(CrawlReference, ALargeSceneWithTheUsualSizes) {
  constexpr unsigned kSeed = 53;
  SCOPED_TRACE(testing::Message() << "seed " << kSeed);
  UniformRandom random(kSeed);
  const NamedGrid scene{"blobs", Blobs(300, 220, random)};
  for (const int threshold : {5, 15, 30})
    ExpectSameCrawl(MakeEmptySet(), scene, {threshold, 30, 10000});
}

}  // namespace
}  // namespace orvandel::test
