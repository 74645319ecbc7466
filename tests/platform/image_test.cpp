#include <cstdint>
#include <cstring>
#include <limits>

#include <gtest/gtest.h>

#include "tests/platform/host_image.h"
#include "tests/platform/image_files.h"

namespace orvandel::test {
namespace {

constexpr int kLongest = std::numeric_limits<int>::max();

TEST(Image, IsCreatedBlackWithTypeAndSize) {
  for (int height = 1; height <= 5; ++height) {
    for (const int width : {1, 2, 63, 64, 65, 200}) {
      const ImagePtr image(im_create(1, width, height));
      ASSERT_TRUE(image);
      EXPECT_EQ(image->type, 1);
      EXPECT_EQ(image->width, width);
      EXPECT_EQ(image->height, height);
      EXPECT_EQ(PixelsOf(*image), Pixels(static_cast<std::size_t>(height),
                                         std::vector<int>(static_cast<std::size_t>(width), 0)));
    }
  }
}

TEST(Image, RowsStartWhereVectorLoadsLikeIt) {
  const ImagePtr image(im_create(1, 65, 7));
  for (int y = 0; y < 7; ++y)
    EXPECT_EQ(reinterpret_cast<std::uintptr_t>(image->row[y]) % 64, 0U) << "row " << y;
}

TEST(Image, RowsFollowEachOtherAtOneDistance) {
  const ImagePtr image(im_create(1, 130, 6));
  for (int y = 1; y < 6; ++y)
    EXPECT_EQ(image->row[y] - image->row[y - 1], 192) << "row " << y;
}

TEST(Image, RowsDoNotOverlap) {
  const ImagePtr image(im_create(1, 67, 5));
  for (int y = 0; y < 5; ++y)
    std::memset(image->row[y], y + 1, 67);
  for (int y = 0; y < 5; ++y)
    EXPECT_EQ(PixelsOf(*image)[static_cast<std::size_t>(y)], std::vector<int>(67, y + 1));
}

TEST(Image, OfAnotherTypeHasOneByteAPixelToo) {
  const ImagePtr image(im_create(7, 3, 2));
  ASSERT_TRUE(image);
  EXPECT_EQ(image->type, 7);
  EXPECT_EQ(PixelsOf(*image), (Pixels{{0, 0, 0}, {0, 0, 0}}));
}

TEST(Image, WithoutPixelsIsRefused) {
  EXPECT_EQ(im_create(1, 0, 5), nullptr);
  EXPECT_EQ(im_create(1, 5, 0), nullptr);
  EXPECT_EQ(im_create(1, -1, 5), nullptr);
  EXPECT_EQ(im_create(1, 5, std::numeric_limits<int>::min()), nullptr);
}

TEST(Image, TooLargeForAnyMemoryIsRefused) {
  EXPECT_EQ(im_create(1, kLongest, kLongest), nullptr);
  EXPECT_EQ(im_create(1, kLongest, 1 << 28), nullptr);
  EXPECT_EQ(im_create(1, 1 << 28, kLongest), nullptr);
}

TEST(Image, DupIsABlackImageOfTheSameTypeAndSize) {
  ImagePtr image = MakeTexture(9, 4);
  image->type = 3;
  const ImagePtr dup(im_dup(image.get()));
  EXPECT_EQ(dup->type, 3);
  EXPECT_EQ(PixelsOf(*dup), Pixels(4, std::vector<int>(9, 0)));
}

TEST(Image, DuplicateHasPixelsOfItsOwn) {
  const ImagePtr image = MakeTexture(70, 3);
  const Pixels before = PixelsOf(*image);
  const ImagePtr copy(im_duplicate(image.get()));
  EXPECT_EQ(PixelsOf(*copy), before);
  copy->row[1][5] ^= 0xff;
  EXPECT_EQ(PixelsOf(*image), before);
}

TEST(Image, DuplicateTakesAHostsRows) {
  HostImage host(5, 4);
  for (int y = 0; y < 4; ++y) {
    for (int x = 0; x < 5; ++x)
      host.At(x, y) = static_cast<std::uint8_t>(10 * y + x);
  }
  const ImagePtr copy(im_duplicate(host.get()));
  EXPECT_EQ(
      PixelsOf(*copy),
      (Pixels{{0, 1, 2, 3, 4}, {10, 11, 12, 13, 14}, {20, 21, 22, 23, 24}, {30, 31, 32, 33, 34}}));
}

TEST(Image, OfNothingIsNothing) {
  EXPECT_EQ(im_dup(nullptr), nullptr);
  EXPECT_EQ(im_duplicate(nullptr), nullptr);
  im_delete(nullptr);
}

}  // namespace
}  // namespace orvandel::test
