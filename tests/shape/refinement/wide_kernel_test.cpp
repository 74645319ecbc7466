#include "shape/refinement/wide_kernel.h"

#include <cmath>

#include <gtest/gtest.h>

#include "base/rounding.h"

namespace orvandel::shape::test {
namespace {

double Box(double frequency) {
  return std::sin(kPi * frequency) / (kPi * frequency);
}

/// Transform of the taps, of a B-spline and of a pixel after each other.
double ResponseInPattern(const BlurTaps& taps, double frequency) {
  double sum = static_cast<double>(taps.half[0]);
  for (std::size_t k = 1; k < taps.half.size(); ++k)
    sum += 2.0 * static_cast<double>(taps.half[k]) *
           std::cos(2.0 * kPi * frequency * static_cast<double>(k));
  return sum * std::pow(Box(frequency), 5.0);
}

// Where pattern and scene have the same pixels, the B-spline of doubled width is a sum of plain ones by the
// two-scale relation, with the binomial weights.
TEST(WideKernelTaps, AreBinomialWeightsAtScaleOne) {
  const BlurTaps taps = MakeWideKernelTaps(1.0);
  ASSERT_EQ(taps.half.size(), 3U);
  EXPECT_NEAR(static_cast<double>(taps.half[0]), 6.0 / 16.0, 1e-6);
  EXPECT_NEAR(static_cast<double>(taps.half[1]), 4.0 / 16.0, 1e-6);
  EXPECT_NEAR(static_cast<double>(taps.half[2]), 1.0 / 16.0, 1e-6);
  EXPECT_NEAR(taps.variance, 1.0, 1e-6);
}

TEST(WideKernelTaps, MakeThePatternLookAsTheSceneDoes) {
  for (const double scale : {0.5, 0.6, 0.7071, 0.8409, 1.0, 1.1892}) {
    const BlurTaps taps = MakeWideKernelTaps(scale);
    // The doubled B-spline and a pixel of the scene, seen in the pattern.
    for (const double frequency : {0.05, 0.1, 0.2, 0.3, 0.4}) {
      const double scene = std::pow(Box(2.0 * frequency / scale), 4.0) * Box(frequency / scale);
      EXPECT_NEAR(ResponseInPattern(taps, frequency), scene, 2e-3) << scale << ' ' << frequency;
    }
  }
}

// Variances of blurs after each other add up: 4/3 of the doubled B-spline and 1/12 of a pixel in the scene,
// 1/3 and 1/12 in the pattern.
TEST(WideKernelTaps, HaveTheVarianceThatIsMissing) {
  for (const double scale : {0.5, 0.7071, 0.8409, 1.0}) {
    const double missing = (17.0 / 12.0) / (scale * scale) - 5.0 / 12.0;
    EXPECT_NEAR(MakeWideKernelTaps(scale).variance, missing, 0.02 * missing) << scale;
  }
}

}  // namespace
}  // namespace orvandel::shape::test
