#include "image/pyramid.h"

#include <gtest/gtest.h>

#include "tests/support/grey_image.h"
#include "tests/support/uniform_random.h"

namespace orvandel {
namespace {

using test::GreyImage;
using test::UniformRandom;

TEST(Pyramid, AFlatImageStaysFlatAtEveryLevel) {
  const GreyImage image(37, 21, 200);
  Pyramid pyramid;
  pyramid.Build(image.View(), 4);
  ASSERT_EQ(pyramid.NumLevels(), 4);
  EXPECT_EQ(pyramid.Image().Width(), 37);
  EXPECT_EQ(pyramid.Image().Height(), 21);
  for (int level = 1; level < 4; ++level) {
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
  for (int level = 1; level < 3; ++level)
    EXPECT_EQ(used.Level(level).pixels, fresh.Level(level).pixels);
}

}  // namespace
}  // namespace orvandel
