#include "image/gradients.h"

#include <gtest/gtest.h>

#include "tests/support/grey_image.h"

namespace orvandel {
namespace {

using test::GreyImage;

GradientPlane GradientsOf(const GreyImage& image) {
  GradientPlane gradients;
  ComputeGradients(ToPlane(UnitImage(image.View())), gradients);
  return gradients;
}

TEST(Gradients, OfAPlaneAreItsSlopes) {
  GreyImage image(20, 12);
  for (int y = 0; y < 12; ++y) {
    for (int x = 0; x < 20; ++x)
      image.At(x, y) = static_cast<std::uint8_t>(100 + 3 * x - 5 * y);
  }
  const GradientPlane gradients = GradientsOf(image);
  for (int y = 1; y < 11; ++y) {
    for (int x = 1; x < 19; ++x) {
      EXPECT_EQ(GradientX(gradients.Row(y)[x]), 3 * static_cast<int>(kUnitsPerSlope));
      EXPECT_EQ(GradientY(gradients.Row(y)[x]), -5 * static_cast<int>(kUnitsPerSlope));
    }
  }
}

TEST(Gradients, TheLargestStepsKeepTheirSigns) {
  GreyImage image(6, 6);
  for (int y = 0; y < 6; ++y) {
    for (int x = 0; x < 3; ++x)
      image.At(x, y) = 255;
  }
  const GradientPlane gradients = GradientsOf(image);
  // Four times the step between the columns beside.
  EXPECT_EQ(GradientX(gradients.Row(2)[2]), -4 * 255 * kUnitsPerGrey);
  EXPECT_EQ(GradientY(gradients.Row(2)[2]), 0);
}

TEST(Gradients, AreNothingInTheOutermostRowsAndColumnsAndInSlivers) {
  GreyImage image(5, 4);
  for (std::size_t i = 0; i < image.pixels.size(); ++i)
    image.pixels[i] = static_cast<std::uint8_t>(i * 37);
  const GradientPlane gradients = GradientsOf(image);
  for (int x = 0; x < 5; ++x) {
    EXPECT_EQ(gradients.Row(0)[x], 0);
    EXPECT_EQ(gradients.Row(3)[x], 0);
  }
  for (int y = 0; y < 4; ++y) {
    EXPECT_EQ(gradients.Row(y)[0], 0);
    EXPECT_EQ(gradients.Row(y)[4], 0);
  }
  for (const std::int32_t packed : GradientsOf(GreyImage(2, 9, 77)).packed)
    EXPECT_EQ(packed, 0);
}

TEST(Gradients, PackingKeepsBothComponents) {
  for (const int x : {-16380, -1, 0, 1, 16380}) {
    for (const int y : {-16380, -1, 0, 1, 16380}) {
      EXPECT_EQ(GradientX(PackGradient(x, y)), x);
      EXPECT_EQ(GradientY(PackGradient(x, y)), y);
    }
  }
}

}  // namespace
}  // namespace orvandel
