#include <cmath>

#include <gtest/gtest.h>

#include "shape/refinement/shaped_blur.h"
#include "tests/shape/refinement/bracket_scene.h"

namespace orvandel::shape::test {
namespace {

/// Second moments of a kernel about its middle.
BlurMoments MomentsOf(BlurKernel& kernel) {
  BlurMoments moments;
  double sum = 0.0;
  for (int y = -kernel.reach; y <= kernel.reach; ++y) {
    for (int x = -kernel.reach; x <= kernel.reach; ++x) {
      const double weight = static_cast<double>(kernel.At(x, y));
      sum += weight;
      moments.round += 0.5 * weight * (x * x + y * y);
      moments.axis += 0.5 * weight * (x * x - y * y);
      moments.diagonal += weight * x * y;
    }
  }
  EXPECT_NEAR(sum, 1.0, 1e-5);
  return moments;
}

TEST(LineOf, IsTheLineThatHasTheMoments) {
  for (const double angle : {-1.5, -0.7, 0.0, 0.3, 1.5}) {
    const double variance = 6.0 * 6.0 / 12.0;  // of a line six pixels long
    const double cosine = std::cos(angle);
    const double sine = std::sin(angle);
    const LineBlur line =
        LineOf({0.5 * variance + 0.2, 0.5 * variance * (cosine * cosine - sine * sine),
                variance * cosine * sine});
    EXPECT_NEAR(line.length, 6.0, 1e-9);
    EXPECT_NEAR(line.rest, 0.2, 1e-9);
    EXPECT_NEAR(std::abs(line.cosine * cosine + line.sine * sine), 1.0, 1e-9);
  }
}

TEST(LineKernel, HasTheMomentsOfTheLineAndTheRoundBlur) {
  for (const double angle : {0.0, 0.4, 1.2, -0.9}) {
    LineBlur line;
    line.length = 5.0;
    line.cosine = std::cos(angle);
    line.sine = std::sin(angle);
    line.rest = 0.3;
    BlurKernel kernel;
    MakeLineKernel(line, 0.1, kernel);
    const BlurMoments moments = MomentsOf(kernel);
    const double variance = 25.0 / 12.0;
    EXPECT_NEAR(moments.round, 0.5 * variance + 0.4, 0.01);
    EXPECT_NEAR(moments.axis, 0.5 * variance * std::cos(2.0 * angle), 0.01);
    EXPECT_NEAR(moments.diagonal, 0.5 * variance * std::sin(2.0 * angle), 0.01);
  }
}

TEST(DiskKernel, HasTheVarianceAsked) {
  for (const double variance : {0.7, 2.0, 6.0}) {
    BlurKernel kernel;
    MakeDiskKernel(variance, 0.2, kernel);
    const BlurMoments moments = MomentsOf(kernel);
    EXPECT_NEAR(moments.round, variance + 0.2, 0.01);
    EXPECT_NEAR(moments.axis, 0.0, 1e-5);
    EXPECT_NEAR(moments.diagonal, 0.0, 1e-5);
  }
}

class ExtraBlurTest : public BracketScene {
 protected:
  Refinement RefineIn(const Exposure& exposure) {
    return RefineNear(Develop(exposure, 0.6, 4).View(), TruthOf(kPose));
  }
};

TEST_F(ExtraBlurTest, RoundIsMeasured) {
  // Optics of 1.5 pixels in the scene, 0.7 in the pattern image.
  const Refinement result = RefineIn(Expose(part_, kPose, kSize, {.optics_px = 1.5}));
  EXPECT_EQ(result.blur.shape, BlurShape::kRound);
  // Blur between two levels is mixed of both, which has the variance but not quite the shape.
  EXPECT_NEAR(result.blur.variance_px2, 1.5 * 1.5 - 0.7 * 0.7, 0.1);
  EXPECT_LT(ErrorOf(result.scene_from_pattern, TruthOf(kPose)), 0.02);
}

TEST_F(ExtraBlurTest, MotionIsMeasuredAsALine) {
  constexpr int kLength = 5;  // pixels along x
  const Exposure sharp = Expose(part_, kPose, kSize);
  Exposure moved = sharp;
  for (int y = 0; y < sharp.height; ++y) {
    for (int x = 2; x + 2 < sharp.width; ++x) {
      double sum = 0.0;
      for (int k = -2; k <= 2; ++k)
        sum += sharp.grey[static_cast<std::size_t>(y * sharp.width + x + k)];
      moved.grey[static_cast<std::size_t>(y * sharp.width + x)] = sum / kLength;
    }
  }
  const Refinement result = RefineIn(moved);
  EXPECT_EQ(result.blur.shape, BlurShape::kLine);
  // Five points a pixel apart have the variance of a line sqrt(24) long.
  EXPECT_NEAR(result.blur.length_px, std::sqrt(24.0), 0.2);
  EXPECT_NEAR(result.blur.direction, 0.0, 0.05);
  EXPECT_LT(ErrorOf(result.scene_from_pattern, TruthOf(kPose)), 0.025);
}

TEST_F(ExtraBlurTest, DefocusIsMeasuredAsADisk) {
  constexpr int kRadius = 3;
  const Exposure sharp = Expose(part_, kPose, kSize);
  Exposure defocused = sharp;
  int count = 0;
  int squares = 0;  // sum of i^2 over the disk's pixels
  for (int y = kRadius; y + kRadius < sharp.height; ++y) {
    for (int x = kRadius; x + kRadius < sharp.width; ++x) {
      double sum = 0.0;
      count = 0;
      for (int j = -kRadius; j <= kRadius; ++j) {
        for (int i = -kRadius; i <= kRadius; ++i) {
          if (i * i + j * j > (kRadius + 0.25) * (kRadius + 0.25)) continue;
          sum += sharp.grey[static_cast<std::size_t>((y + j) * sharp.width + x + i)];
          ++count;
          squares += y == kRadius && x == kRadius ? i * i : 0;
        }
      }
      defocused.grey[static_cast<std::size_t>(y * sharp.width + x)] = sum / count;
    }
  }
  const Refinement result = RefineIn(defocused);
  EXPECT_EQ(result.blur.shape, BlurShape::kDisk);
  // A disk of radius r has the variance r^2 / 4.
  EXPECT_NEAR(result.blur.radius_px, 2.0 * std::sqrt(static_cast<double>(squares) / count), 0.1);
  EXPECT_LT(ErrorOf(result.scene_from_pattern, TruthOf(kPose)), 0.025);
}

}  // namespace
}  // namespace orvandel::shape::test
