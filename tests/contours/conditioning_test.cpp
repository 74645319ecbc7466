#include "contours/conditioning.h"

#include <algorithm>

#include <gtest/gtest.h>

#include "tests/support/contour_sets.h"
#include "tests/support/image_patterns.h"
#include "tests/support/same_bits.h"

namespace orvandel::test {
namespace {

constexpr CrawlOptions kCrawl = {.edge_threshold = 12, .min_size = 5};
constexpr ResampleOptions kResample = {.step = 1.5, .min_dist = 0.5};

void ExpectSameContours(const ContourSetView& contours, const ContourSetView& expected) {
  ASSERT_EQ(contours.NumContours(), expected.NumContours());
  ASSERT_EQ(contours.NumPoints(), expected.NumPoints());
  for (std::size_t i = 0; i < contours.NumContours(); ++i) {
    EXPECT_EQ(contours.records[i].start, expected.records[i].start) << i;
    EXPECT_EQ(contours.records[i].size, expected.records[i].size) << i;
    EXPECT_EQ(contours.records[i].closed, expected.records[i].closed) << i;
  }
  for (std::size_t k = 0; k < contours.NumPoints(); ++k) {
    ASSERT_TRUE(SameBits(contours.x[k], expected.x[k])) << k;
    ASSERT_TRUE(SameBits(contours.y[k], expected.y[k])) << k;
    ASSERT_TRUE(SameBits(contours.g[k], expected.g[k])) << k;
    ASSERT_EQ(contours.f[k], expected.f[k]) << k;
  }
}

TEST(Conditioning, GivesWhatTheClassicFunctionsGiveOneAfterTheOther) {
  UniformRandom random(3);
  for (int i = 0; i < 5; ++i) {
    const Grid grid = Blobs(60 + i, 50, random);
    const ContourHandle classic = MakeEmptySet();
    Fields(classic).step = kResample.step;
    Fields(classic).min_dist = kResample.min_dist;
    ASSERT_EQ(ctd_crawl(classic.get(), ImageOf(grid).get(), kCrawl.edge_threshold, kCrawl.min_size,
                        kCrawl.max_size),
              0);
    ctd_average(classic.get());
    ctd_resample(classic.get());
    ctd_sort(classic.get(), 1);

    CEdgeImgComplement edges;
    const ContourSet contours =
        ConditionedContours(RowsOf(*ImageOf(grid)), kCrawl, kResample, edges);
    EXPECT_GT(contours.num_contours, 1);
    ExpectSameContours(contours.View(), ViewOf(Fields(classic)));

    const CEdgeImgComplement& classic_edges = *Fields(classic).edgeIm;
    ASSERT_EQ(edges.map_size, classic_edges.map_size);
    EXPECT_TRUE(std::equal(edges.valid, edges.valid + edges.map_size, classic_edges.valid));
    EXPECT_EQ(edges.count, classic_edges.count);
  }
}

TEST(Conditioning, AnImageWithoutEdgesHasNoContours) {
  const ImagePtr flat = ImageOf(Painted(20, 10, [](int, int) { return 77; }));
  CEdgeImgComplement edges;
  const ContourSet contours = ConditionedContours(RowsOf(*flat), {}, {}, edges);
  EXPECT_EQ(contours.num_contours, 0);
  EXPECT_EQ(contours.View().NumPoints(), 0u);
  EXPECT_EQ(edges.width, 20);
  EXPECT_EQ(edges.height, 10);
}

TEST(Conditioning, TheLongestContourComesFirst) {
  UniformRandom random(4);
  CEdgeImgComplement edges;
  const ImagePtr image = ImageOf(Blobs(80, 60, random));
  const ContourSet contours = ConditionedContours(RowsOf(*image), kCrawl, kResample, edges);
  const auto records = contours.View().records;
  ASSERT_GT(records.size(), 2u);
  EXPECT_TRUE(std::is_sorted(
      records.begin(), records.end(),
      [](const ContourRecord& a, const ContourRecord& b) { return a.size > b.size; }));
}

}  // namespace
}  // namespace orvandel::test
