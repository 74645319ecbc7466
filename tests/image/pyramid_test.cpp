#include "image/pyramid.h"

#include <gtest/gtest.h>

#include "tests/support/grey_image.h"
#include "tests/support/uniform_random.h"

namespace orvandel {
namespace {

using test::DeepImage;
using test::GreyImage;
using test::UniformRandom;

TEST(Pyramid, AFlatImageStaysFlatAtEveryLevel) {
  const GreyImage image(37, 21, 200);
  Pyramid pyramid;
  pyramid.Build(image.View(), 4);
  ASSERT_EQ(pyramid.NumLevels(), 4);
  for (int level = 0; level < 4; ++level) {
    EXPECT_EQ(pyramid.Level(level).width, 37 >> level);
    EXPECT_EQ(pyramid.Level(level).height, 21 >> level);
    for (const std::uint16_t pixel : pyramid.Level(level).pixels)
      EXPECT_EQ(pixel, 200 * kUnitsPerGrey);
  }
}

TEST(Pyramid, PixelsAreMeansOfTheirSquaresWithinTheRoundings) {
  UniformRandom random(11);
  GreyImage image(24, 16);
  for (auto& pixel : image.pixels)
    pixel = static_cast<std::uint8_t>(random.Integer(0, 255));
  Pyramid pyramid;
  pyramid.Build(image.View(), 4);
  for (int level = 1; level < 4; ++level) {
    const int side = 1 << level;
    for (int y = 0; y < 16 / side; ++y) {
      for (int x = 0; x < 24 / side; ++x) {
        double sum = 0.0;
        for (int i = 0; i < side * side; ++i)
          sum += image.At(x * side + i % side, y * side + i / side);
        // Each halving rounds by at most half a unit.
        EXPECT_NEAR(pyramid.Level(level).Row(y)[x], sum * kUnitsPerGrey / (side * side),
                    0.5 * level);
      }
    }
  }
}

TEST(Pyramid, EndsWhereAnImageCannotBeHalved) {
  const GreyImage narrow(1, 50, 7);
  Pyramid pyramid;
  pyramid.Build(narrow.View(), 5);
  EXPECT_EQ(pyramid.NumLevels(), 1);
  const GreyImage small(5, 9, 7);
  pyramid.Build(small.View(), 5);
  EXPECT_EQ(pyramid.NumLevels(), 3);
}

TEST(Pyramid, ReadsRowsBottomUpAndWithGaps) {
  GreyImage image(8, 4);
  for (int y = 0; y < 4; ++y) {
    for (int x = 0; x < 8; ++x)
      image.At(x, y) = static_cast<std::uint8_t>(16 * y + x);
  }
  Pyramid pyramid;
  pyramid.Build(ImageView8{&image.At(2, 3), 5, 4, -8}, 1);
  for (int y = 0; y < 4; ++y) {
    for (int x = 0; x < 5; ++x)
      EXPECT_EQ(pyramid.Level(0).Row(y)[x], kUnitsPerGrey * (16 * (3 - y) + x + 2));
  }
}

TEST(Pyramid, DeepImagesAreBroughtToTwelveBitsByAPowerOfTwo) {
  DeepImage image(3, 3, 100);
  const auto unit_of = [&image](std::uint16_t brightest) {
    image.At(1, 1) = brightest;
    Pyramid pyramid;
    pyramid.Build(image.View(), 1);
    return pyramid.Level(0).Row(0)[0];
  };
  EXPECT_EQ(unit_of(4095), 100);      // fits as it is
  EXPECT_EQ(unit_of(250), 100 << 4);  // 250 << 4 = 4000
  EXPECT_EQ(unit_of(65535), 100 >> 4);
  EXPECT_EQ(unit_of(4096), 100 >> 1);
}

TEST(Pyramid, WhatItHeldBeforeChangesNothing) {
  GreyImage image(40, 30);
  UniformRandom random(5);
  for (auto& pixel : image.pixels)
    pixel = static_cast<std::uint8_t>(random.Integer(0, 255));
  Pyramid fresh;
  fresh.Build(image.View(), 3);
  Pyramid used;
  used.Build(GreyImage(100, 80, 9).View(), 5);
  used.Build(image.View(), 3);
  ASSERT_EQ(used.NumLevels(), 3);
  for (int level = 0; level < 3; ++level)
    EXPECT_EQ(used.Level(level).pixels, fresh.Level(level).pixels);
}

}  // namespace
}  // namespace orvandel
