#include "examples/render/noise.h"

#include <cmath>

#include <gtest/gtest.h>

#include "image/pyramid.h"
#include "tests/support/grey_image.h"

namespace orvandel {
namespace {

using test::GreyImage;

double NoiseOf(const GreyImage& image) {
  return EstimateNoise(UnitImage(image.View())) / kUnitsPerGrey;
}

/// A ramp with nearly Gaussian noise; values are rounded to grey levels.
GreyImage NoisyRamp(double sigma) {
  render::RandomSource random(42);
  GreyImage image(320, 240);
  for (int y = 0; y < image.height; ++y) {
    for (int x = 0; x < image.width; ++x) {
      const double grey = 60.0 + 0.3 * x + 0.2 * y + sigma * random.NearlyNormal();
      image.At(x, y) = static_cast<std::uint8_t>(std::lround(grey));
    }
  }
  return image;
}

TEST(Noise, OfARampIsWhatWasAdded) {
  for (const double sigma : {1.0, 2.0, 5.0, 10.0}) {
    // Rounding adds a twelfth of a squared grey level. The quantile of 15000 correlated values is good to 3 of 100 or so.
    const double expected = std::sqrt(sigma * sigma + 1.0 / 12.0);
    EXPECT_NEAR(NoiseOf(NoisyRamp(sigma)), expected, 0.05 * expected) << sigma;
  }
}

TEST(Noise, IsHardlyRaisedByEdges) {
  GreyImage image = NoisyRamp(2.0);
  for (int y = 0; y < image.height; ++y) {
    for (int x = 0; x < image.width; ++x) {
      if ((x / 16 + y / 16) % 2 == 0)
        image.At(x, y) = static_cast<std::uint8_t>(image.At(x, y) - 50);
    }
  }
  // A quarter of the pixels touch an edge: the quantile then is that of 40 of 100 of the others.
  EXPECT_NEAR(NoiseOf(image), 2.02, 0.8);
}

TEST(Noise, OfAFlatOrTinyImageIsNextToNone) {
  // Where all differences are the same, the quantile is only known to lie within half a grey level.
  EXPECT_LT(NoiseOf(GreyImage(50, 50, 128)), 0.5 / 6.0);
  EXPECT_EQ(NoiseOf(GreyImage(2, 50, 128)), 0.0);
}

}  // namespace
}  // namespace orvandel
