#include "platform/imgutil/grey.h"

#include <cmath>
#include <cstdlib>

#include <gtest/gtest.h>

#include "tests/platform/image_files.h"

namespace orvandel::test {
namespace {

/// One pixel of a colour, by way of a raw colour map.
int GreyFromFile(const BytesAsImageFile& image_file, int red, int green, int blue) {
  const Bytes pixel = {static_cast<std::uint8_t>(red), static_cast<std::uint8_t>(green),
                       static_cast<std::uint8_t>(blue)};
  return image_file.Read(BytesOf("P6 1 1 255\n") + pixel, 1, 1).pixels[0][0];
}

TEST(Grey, OfTheCornersOfTheColourCube) {
  EXPECT_EQ(GreyOf(0, 0, 0), 0);
  EXPECT_EQ(GreyOf(255, 0, 0), 76);     // 76.245
  EXPECT_EQ(GreyOf(0, 255, 0), 150);    // 149.685
  EXPECT_EQ(GreyOf(0, 0, 255), 29);     // 29.07
  EXPECT_EQ(GreyOf(255, 255, 0), 226);  // 225.93
  EXPECT_EQ(GreyOf(255, 0, 255), 105);  // 105.315
  EXPECT_EQ(GreyOf(0, 255, 255), 179);  // 178.755
  EXPECT_EQ(GreyOf(255, 255, 255), 255);
}

TEST(Grey, OfTheCornersIsTheSameInFiles) {
  const BytesAsImageFile image_file(".ppm");
  for (const int red : {0, 255}) {
    for (const int green : {0, 255}) {
      for (const int blue : {0, 255})
        EXPECT_EQ(GreyFromFile(image_file, red, green, blue), GreyOf(red, green, blue));
    }
  }
}

TEST(Grey, OfEqualChannelsIsTheirValue) {
  for (int value = 0; value < 256; ++value)
    EXPECT_EQ(GreyOf(value, value, value), value);
}

TEST(Grey, HalfwayIsRoundedUp) {
  // 0.299 * 10 + 0.587 * 20 + 0.114 * 15 = 16.44, 0.299 * 0 + 0.587 * 0 + 0.114 * 250 = 28.5.
  EXPECT_EQ(GreyOf(10, 20, 15), 16);
  EXPECT_EQ(GreyOf(0, 0, 250), 29);
}

TEST(Grey, IsNeverMoreThanHalfAGreyValueOff) {
  for (int red = 0; red < 256; red += 3) {
    for (int green = 0; green < 256; green += 3) {
      for (int blue = 0; blue < 256; ++blue) {
        const int thousandths = 299 * red + 587 * green + 114 * blue;
        ASSERT_LE(std::abs(1000 * GreyOf(red, green, blue) - thousandths), 500)
            << red << ' ' << green << ' ' << blue;
      }
    }
  }
}

}  // namespace
}  // namespace orvandel::test
