#include <array>
#include <cstdint>
#include <limits>

#include <gtest/gtest.h>

#include "orvandel/classic/mvtools_i.h"
#include "tests/platform/host_image.h"
#include "tests/platform/image_files.h"

namespace orvandel::test {
namespace {

using Counts = std::array<std::int32_t, 256>;

Counts CountsOf(const tImage* image) {
  Counts counts;
  counts.fill(-5);
  mvt_hist(image, counts.data());
  return counts;
}

TEST(Histogram, CountsEveryPixelOnce) {
  const ImagePtr image = MakeImage(67, 3, [](int x, int y) { return y == 0 ? 255 : x % 2; });
  Counts expected{};
  expected[255] = 67;
  expected[0] = 2 * 34;
  expected[1] = 2 * 33;
  EXPECT_EQ(CountsOf(image.get()), expected);
}

TEST(Histogram, OfEveryValueOnce) {
  const ImagePtr image = MakeImage(16, 16, [](int x, int y) { return 16 * y + x; });
  Counts expected;
  expected.fill(1);
  EXPECT_EQ(CountsOf(image.get()), expected);
}

TEST(Histogram, TakesAHostsRows) {
  HostImage image(2, 3);
  image.At(1, 2) = 9;
  Counts expected{};
  expected[0] = 5;
  expected[9] = 1;
  EXPECT_EQ(CountsOf(image.get()), expected);
}

TEST(Histogram, OfNothingIsEmpty) {
  EXPECT_EQ(CountsOf(nullptr), Counts{});
  mvt_hist(MakeTexture(2, 2).get(), nullptr);
}

TEST(Constant, FillsThePixelsAndNothingElse) {
  const ImagePtr image(im_create(1, 5, 3));
  mvt_constant(image.get(), 200);
  EXPECT_EQ(PixelsOf(*image), Pixels(3, std::vector<int>(5, 200)));
  EXPECT_EQ(image->row[0][5], 0) << "padding";
}

TEST(Constant, TakesTheLowEightBits) {
  const ImagePtr image(im_create(1, 1, 1));
  mvt_constant(image.get(), 256 + 7);
  EXPECT_EQ(image->row[0][0], 7);
  mvt_constant(image.get(), -1);
  EXPECT_EQ(image->row[0][0], 255);
}

TEST(Constant, FillsAHostsRows) {
  HostImage image(4, 3);
  mvt_constant(image.get(), 3);
  EXPECT_EQ(PixelsOf(*image.get()), Pixels(3, std::vector<int>(4, 3)));
}

TEST(PutPixel, SetsOnePixel) {
  const ImagePtr image(im_create(1, 3, 2));
  mvt_put_bpixel(image.get(), 2, 1, 9);
  mvt_put_bpixel(image.get(), 0, 0, 256 + 8);
  mvt_put_bpixel(image.get(), 1, 0, -1);
  EXPECT_EQ(PixelsOf(*image), (Pixels{{8, 255, 0}, {0, 0, 9}}));
}

TEST(PutPixel, OutsideDoesNothing) {
  constexpr int kMin = std::numeric_limits<int>::min();
  constexpr int kMax = std::numeric_limits<int>::max();
  HostImage image(3, 2);
  for (const int x : {kMin, -1, 0, 2, 3, kMax}) {
    for (const int y : {kMin, -1, 2, kMax})
      mvt_put_bpixel(image.get(), x, y, 9);
  }
  for (const int y : {0, 1}) {
    for (const int x : {kMin, -1, 3, kMax})
      mvt_put_bpixel(image.get(), x, y, 9);
  }
  EXPECT_EQ(PixelsOf(*image.get()), (Pixels{{0, 0, 0}, {0, 0, 0}}));
}

TEST(GreyValues, OfNoImageDoNothing) {
  mvt_constant(nullptr, 5);
  mvt_put_bpixel(nullptr, 0, 0, 5);
}

}  // namespace
}  // namespace orvandel::test
