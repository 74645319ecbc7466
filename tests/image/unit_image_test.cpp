#include "image/unit_image.h"

#include <array>

#include <gtest/gtest.h>

#include "image/pyramid.h"
#include "tests/support/grey_image.h"

namespace orvandel {
namespace {

using test::DeepImage;
using test::GreyImage;

TEST(UnitImage, ReadsRowsBottomUpAndWithGaps) {
  GreyImage image(8, 4);
  for (int y = 0; y < 4; ++y) {
    for (int x = 0; x < 8; ++x)
      image.At(x, y) = static_cast<std::uint8_t>(16 * y + x);
  }
  const UnitImage units(ImageView8{&image.At(2, 3), 5, 4, -8});
  const GreyPlane plane = ToPlane(units);
  for (int y = 0; y < 4; ++y) {
    for (int x = 0; x < 5; ++x)
      EXPECT_EQ(plane.Row(y)[x], kUnitsPerGrey * (16 * (3 - y) + x + 2));
    std::array<std::uint16_t, 2> part = {};
    units.CopyRow(y, 2, 2, part.data());
    EXPECT_EQ(part[0], plane.Row(y)[2]);
    EXPECT_EQ(part[1], plane.Row(y)[3]);
  }
}

TEST(UnitImage, DeepImagesAreBroughtToTwelveBitsByAPowerOfTwo) {
  DeepImage image(3, 3, 100);
  const auto unit_of = [&image](std::uint16_t brightest) {
    image.At(1, 1) = brightest;
    return ToPlane(UnitImage(image.View())).Row(0)[0];
  };
  EXPECT_EQ(unit_of(4095), 100);      // fits as it is
  EXPECT_EQ(unit_of(250), 100 << 4);  // 250 << 4 = 4000
  EXPECT_EQ(unit_of(65535), 100 >> 4);
  EXPECT_EQ(unit_of(4096), 100 >> 1);
}

}  // namespace
}  // namespace orvandel
