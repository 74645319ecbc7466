#include <cmath>
#include <limits>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "base/rounding.h"
#include "orvandel/classic/ctd.h"
#include "orvandel/classic/edge_record.h"
#include "tests/support/contour_sets.h"
#include "tests/support/grids.h"

// The whole of `ctd_crawl`. Images lower than 5 pixels are not touched by the edge detector, so
// their non-zero pixels are followed as they are.
namespace orvandel::test {
namespace {

constexpr int kAnySize = 1000000;

/// A set that has been crawled once: 2 contours, parameters 7, 2, 50.
ContourHandle CrawledSet() {
  ContourHandle set = MakeEmptySet();
  const ImagePtr image = ImageOf(Drawn({".........",  //
                                        ".######..",  //
                                        ".........",  //
                                        "...#####."}));
  EXPECT_EQ(ctd_crawl(set.get(), image.get(), 7, 2, 50), 0);
  EXPECT_EQ(ctd_contour_count(set.get()), 2);
  return set;
}

void ExpectUnchanged(const ContourHandle& set) {
  EXPECT_EQ(Fields(set).edge_threshold, 7);
  EXPECT_EQ(Fields(set).min_size, 2);
  EXPECT_EQ(Fields(set).max_size, 50);
  EXPECT_EQ(ctd_contour_count(set.get()), 2);
  EXPECT_EQ(ctd_point_count(set.get()), 11);
  EXPECT_EQ(ctd_contour_x(set.get(), 0, 5), 6.0);
}

TEST(Crawl, FollowsThePixelsOfALowImageAsTheyAre) {
  const ContourHandle set = MakeEmptySet();
  const ImagePtr image = ImageOf(Drawn({"......", ".####.", "......", "......"}));
  EXPECT_EQ(ctd_crawl(set.get(), image.get(), 20, 2, 100), 0);
  ASSERT_EQ(ctd_contour_count(set.get()), 1);
  ASSERT_EQ(ctd_contour_size(set.get(), 0), 4);
  EXPECT_EQ(ctd_contour_closed(set.get(), 0), 0);
  for (int k = 0; k < 4; ++k) {
    EXPECT_EQ(ctd_contour_x(set.get(), 0, k), 1.0 + k);
    EXPECT_EQ(ctd_contour_y(set.get(), 0, k), 1.0);
    EXPECT_EQ(ctd_contour_g(set.get(), 0, k), 0.0);
    EXPECT_EQ(ctd_contour_f(set.get(), 0, k), 0u);
  }
  EXPECT_EQ(GridOf(*image), MakeGrid(6, 4));
}

TEST(Crawl, StoresItsParametersAndExactCapacities) {
  const ContourHandle set = CrawledSet();
  ExpectUnchanged(set);
  EXPECT_EQ(Fields(set).point_capacity, 11);
  EXPECT_EQ(Fields(set).contour_capacity, 2);
}

TEST(Crawl, ReplacesTheContoursOfTheLastOne) {
  const ContourHandle set = CrawledSet();
  ctd_set_contour_f(set.get(), 0, 0, 5);
  const ImagePtr image = ImageOf(Drawn({".....", ".###.", "....."}));
  EXPECT_EQ(ctd_crawl(set.get(), image.get(), 20, 1, 9), 0);
  EXPECT_EQ(ctd_contour_count(set.get()), 1);
  EXPECT_EQ(ctd_point_count(set.get()), 3);
  EXPECT_EQ(ctd_active_point_count(set.get()), 3);
  EXPECT_EQ(ctd_min_size(set.get()), 1);
}

TEST(Crawl, AnImageWithoutEdgesGivesAnEmptySet) {
  const ContourHandle set = CrawledSet();
  const ImagePtr image = MakeImage(30, 20, [](int, int) { return 90; });
  EXPECT_EQ(ctd_crawl(set.get(), image.get(), 20, 1, kAnySize), 0);
  EXPECT_EQ(ctd_contour_count(set.get()), 0);
  EXPECT_EQ(ctd_point_count(set.get()), 0);
  EXPECT_EQ(GridOf(*image), MakeGrid(30, 20));
}

TEST(Crawl, AnotherPixelTypeGives13AndChangesNothing) {
  const ContourHandle set = CrawledSet();
  const ImagePtr image = ImageOf(Drawn({".....", ".###.", "....."}));
  for (const int type : {0, 2, -1}) {
    image->type = type;
    EXPECT_EQ(ctd_crawl(set.get(), image.get(), 20, 1, 9), 13);
    ExpectUnchanged(set);
    EXPECT_EQ(GridOf(*image), Drawn({".....", ".###.", "....."}));
  }
  image->type = 1;
}

TEST(Crawl, AnotherPixelTypeMakesNoEdgeRecord) {
  const ContourHandle set = MakeEmptySet();
  const ImagePtr image(im_create(2, 9, 9));
  EXPECT_EQ(ctd_crawl(set.get(), image.get(), 20, 1, 9), 13);
  EXPECT_EQ(ctd_edgeIm(set.get()), nullptr);
  EXPECT_EQ(ctd_min_size(set.get()), 30);
}

TEST(Crawl, NoImageGives13AndChangesNothing) {
  const ContourHandle set = CrawledSet();
  EXPECT_EQ(ctd_crawl(set.get(), nullptr, 20, 1, 9), 13);
  ExpectUnchanged(set);
}

TEST(Crawl, Images65536PixelsLongGive13AndChangeNothing) {
  const ContourHandle set = CrawledSet();
  const ImagePtr wide = MakeImage(65536, 3, [](int x, int) { return x < 4 ? 255 : 0; });
  EXPECT_EQ(ctd_crawl(set.get(), wide.get(), 20, 1, 9), 13);
  ExpectUnchanged(set);
  EXPECT_EQ(wide->row[1][1], 255);
  const ImagePtr tall = MakeImage(3, 65536, [](int, int y) { return y < 4 ? 255 : 0; });
  EXPECT_EQ(ctd_crawl(set.get(), tall.get(), 20, 1, 9), 13);
  ExpectUnchanged(set);
  EXPECT_EQ(tall->row[1][1], 255);
}

TEST(Crawl, Images65535PixelsLongAreFollowedToTheirEnd) {
  const ContourHandle set = MakeEmptySet();
  const ImagePtr wide =
      MakeImage(65535, 3, [](int x, int y) { return y == 1 && x >= 65500 ? 255 : 0; });
  EXPECT_EQ(ctd_crawl(set.get(), wide.get(), 20, 1, 100), 0);
  ASSERT_EQ(ctd_contour_count(set.get()), 1);
  ASSERT_EQ(ctd_contour_size(set.get(), 0), 35);
  EXPECT_EQ(ctd_contour_x(set.get(), 0, 34), 65534.0);
}

TEST(Crawl, KeepsItsEdgeRecordAndResizesIt) {
  const ContourHandle set = CrawledSet();
  CEdgeImgComplement* const edges = ctd_edgeIm(set.get());
  ASSERT_NE(edges, nullptr);
  EXPECT_EQ(edges->width, 9);
  EXPECT_EQ(edges->height, 4);
  const ImagePtr image = MakeImage(20, 12, [](int x, int) { return x < 9 ? 10 : 150; });
  EXPECT_EQ(ctd_crawl(set.get(), image.get(), 20, 1, 100), 0);
  EXPECT_EQ(ctd_edgeIm(set.get()), edges);
  EXPECT_EQ(edges->width, 20);
  EXPECT_EQ(edges->height, 12);
  EXPECT_GT(edges->count, 0);
}

TEST(Crawl, ALowImageOfTheSameSizeTakesThePositionsThatTheRecordStillHolds) {
  const ContourHandle set = MakeEmptySet();
  const Grid map = Drawn({"......", ".####.", "......", "......"});
  ASSERT_EQ(ctd_crawl(set.get(), ImageOf(map).get(), 20, 1, 100), 0);
  ctd_edgeIm(set.get())->Store(2.75, 1.25, 1.5);
  ASSERT_EQ(ctd_crawl(set.get(), ImageOf(map).get(), 20, 1, 100), 0);
  EXPECT_EQ(ctd_contour_x(set.get(), 0, 0), 1.0);
  EXPECT_EQ(ctd_contour_x(set.get(), 0, 1), 2.75);
  EXPECT_EQ(ctd_contour_y(set.get(), 0, 1), 1.25);
  EXPECT_EQ(ctd_contour_g(set.get(), 0, 1), 1.5);
  EXPECT_EQ(ctd_contour_x(set.get(), 0, 2), 3.0);
  EXPECT_EQ(ctd_edgeIm(set.get())->count, 1);
}

TEST(Crawl, ADenseLowImageLosesNothing) {
  const ContourHandle set = MakeEmptySet();
  const ImagePtr image = MakeImage(60, 4, [](int, int) { return 1; });
  EXPECT_EQ(ctd_crawl(set.get(), image.get(), 20, 1, kAnySize), 0);
  EXPECT_GE(ctd_point_count(set.get()), 59 * 3);
}

TEST(Crawl, SizeLimitsMayBeTheLargestAndSmallestIntegers) {
  const ContourHandle set = MakeEmptySet();
  const ImagePtr image = ImageOf(Drawn({"......", ".####.", "......", "......"}));
  EXPECT_EQ(ctd_crawl(set.get(), image.get(), 20, std::numeric_limits<int>::min(),
                      std::numeric_limits<int>::max()),
            0);
  EXPECT_EQ(ctd_contour_count(set.get()), 1);
}

/// Grey value of a pixel that a bright disc covers in part, by 16 x 16 samples.
int DiscPixel(int column, int row, double cx, double cy, double radius) {
  int inside = 0;
  for (int i = 0; i < 256; ++i) {
    const double x = column + (i % 16 + 0.5) / 16;
    const double y = row + (i / 16 + 0.5) / 16;
    inside += std::hypot(x - cx, y - cy) < radius;
  }
  return 20 + 200 * inside / 256;
}

TEST(Crawl, ADiscGivesAClosedContourOnItsRimThatPointsToItsCentre) {
  constexpr double kCx = 31.3, kCy = 28.8, kRadius = 20.5;
  const ContourHandle set = MakeEmptySet();
  const ImagePtr image =
      MakeImage(64, 60, [](int x, int y) { return DiscPixel(x, y, kCx, kCy, kRadius); });
  EXPECT_EQ(ctd_crawl(set.get(), image.get(), 20, 60, 10000), 0);
  ASSERT_EQ(ctd_contour_count(set.get()), 1);
  EXPECT_EQ(ctd_contour_closed(set.get(), 0), 1);
  EXPECT_GT(ctd_contour_size(set.get(), 0), 100);
  double mean_x = 0, mean_y = 0;
  ctd_centroid(set.get(), &mean_x, &mean_y);
  // The mean over a rim of pixel-quantised gradients; the rim itself is within the pixel.
  EXPECT_NEAR(mean_x, kCx, 0.2);
  EXPECT_NEAR(mean_y, kCy, 0.2);
  for (int k = 0; k < ctd_contour_size(set.get(), 0); ++k) {
    const double dx = kCx - ctd_contour_x(set.get(), 0, k);
    const double dy = kCy - ctd_contour_y(set.get(), 0, k);
    EXPECT_NEAR(std::hypot(dx, dy), kRadius, 0.5);
    const double g = ctd_contour_g(set.get(), 0, k);
    // Bright inside: (cos g, -sin g) points to the centre, within the coarse gradient's 10 degrees.
    EXPECT_GT((std::cos(g) * dx - std::sin(g) * dy) / std::hypot(dx, dy), std::cos(kPi / 18));
  }
}

TEST(Crawl, AnImageIsUsedUp) {
  const ContourHandle set = MakeEmptySet();
  const ImagePtr image =
      MakeImage(64, 60, [](int x, int y) { return DiscPixel(x, y, 31.3, 28.8, 20.5); });
  EXPECT_EQ(ctd_crawl(set.get(), image.get(), 20, 100000, 100000), 0);  // every chain is dropped
  EXPECT_EQ(ctd_contour_count(set.get()), 0);
  EXPECT_EQ(GridOf(*image), MakeGrid(64, 60));
}

}  // namespace
}  // namespace orvandel::test
