#include "shape/refinement/pose_covariance.h"

#include <array>
#include <cmath>

#include <gtest/gtest.h>

#include "base/sweep.h"
#include "tests/shape/refinement/bracket_scene.h"

namespace orvandel::shape::test {
namespace {

/// Square of an error in units of its covariance: 4 in the mean where the covariance is right.
double NormalizedSquare(const Refinement& result, const Similarity& truth, double radius) {
  // In units of like size, so that the inverse is exact.
  const std::array<double, 4> unit = {1.0, 1.0, radius, radius};
  const Similarity& found = result.scene_from_pattern;
  const std::array<double, 4> error = {found.x - truth.x, found.y - truth.y,
                                       NormalizedAngle(found.angle - truth.angle),
                                       found.scale - truth.scale};
  SymmetricMatrix inverse;
  double scale[4];
  for (std::size_t i = 0; i < 4; ++i) {
    for (std::size_t j = 0; j < 4; ++j)
      inverse.at[i][j] = result.covariance[4 * i + j] * unit[i] * unit[j];
    scale[i] = inverse.at[i][i];
  }
  EXPECT_EQ(InvertBySweeping(inverse, 4, scale), 4);
  double square = 0.0;
  for (std::size_t i = 0; i < 4; ++i) {
    for (std::size_t j = 0; j < 4; ++j)
      square += error[i] * unit[i] * inverse.at[i][j] * error[j] * unit[j];
  }
  return square;
}

class PoseCovarianceTest : public BracketScene {};

TEST_F(PoseCovarianceTest, AgreesWithTheSpreadOverRepeatedNoise) {
  constexpr int kRuns = 60;
  for (const double noise : {3.0, 12.0}) {
    const Exposure exposure = Expose(part_, kPose, kSize);
    double sum = 0.0;
    int num_inside = 0;
    for (std::uint32_t seed = 1; seed <= kRuns; ++seed) {
      const RenderedImage scene = Develop(exposure, noise, seed);
      const Refinement result = RefineNear(scene.View(), TruthOf(kPose));
      ASSERT_EQ(result.outcome, RefinementOutcome::kRefined);
      const double square = NormalizedSquare(result, TruthOf(kPose), model_.radius);
      sum += square;
      num_inside += square < 9.488 ? 1 : 0;  // 95 % of chi-square with four degrees of freedom
    }
    // The mean of so many has a deviation of sqrt(8 / 60) = 0.37; four of them either way.
    EXPECT_NEAR(sum / kRuns, 4.0, 1.5) << noise;
    EXPECT_GE(num_inside, 52);  // fewer have a chance below 1 in 100
  }
}

TEST_F(PoseCovarianceTest, GrowsWithTheSquareOfTheNoise) {
  const Exposure exposure = Expose(part_, kPose, kSize);
  const Refinement quiet = RefineNear(Develop(exposure, 4.0, 3).View(), TruthOf(kPose));
  const Refinement loud = RefineNear(Develop(exposure, 12.0, 3).View(), TruthOf(kPose));
  for (const std::size_t i : {0U, 5U, 10U, 15U})
    EXPECT_NEAR(loud.covariance[i] / quiet.covariance[i], 9.0, 2.5);  // noise is known to a tenth
}

TEST_F(PoseCovarianceTest, IsSymmetric) {
  const Refinement result = RefineNear(TakeImage(part_, kPose, kSize).View(), TruthOf(kPose));
  for (std::size_t i = 0; i < 4; ++i) {
    for (std::size_t j = 0; j < i; ++j)
      EXPECT_NEAR(result.covariance[4 * i + j], result.covariance[4 * j + i],
                  1e-6 * std::sqrt(result.covariance[5 * i] * result.covariance[5 * j]));
  }
}

TEST_F(PoseCovarianceTest, OfAStartThatComesBackIsTheStartsOwn) {
  const Similarity start = {100, 100, 0.3, 2.0};
  const RenderedImage flat = {40, 40, std::vector<std::uint8_t>(1600, 90)};
  const Refinement result =
      RefinePose(model_, flat.View(), start, {.start_deviation_px = 0.4}, workspace_);
  ASSERT_NE(result.outcome, RefinementOutcome::kRefined);
  // A corner moves with the shift, and by its distance with angle and scale.
  const double distance = model_.radius * start.scale;
  const double corner = result.covariance[0] + result.covariance[5] +
                        distance * distance * result.covariance[10] +
                        model_.radius * model_.radius * result.covariance[15];
  EXPECT_NEAR(std::sqrt(corner), 0.4, 1e-9);
}

}  // namespace
}  // namespace orvandel::shape::test
