#include "evaluation/pose_deviation.h"

#include <array>
#include <cmath>
#include <limits>

#include <gtest/gtest.h>

#include "base/rounding.h"
#include "tests/evaluation/case_results.h"
#include "tests/support/uniform_random.h"

namespace orvandel::evaluation::test {

using orvandel::test::UniformRandom;

namespace {

// The frame's origin is the image's centre, as that of manifests.

std::array<double, 16> Diagonal(double x, double y, double angle, double scale) {
  std::array<double, 16> covariance = {};
  covariance[0] = x;
  covariance[5] = y;
  covariance[10] = angle;
  covariance[15] = scale;
  return covariance;
}

TEST(PoseDeviation, IsTheSumOfSquaresInDeviations) {
  const Similarity found = {200.2, 149.7, 0.54, 0.9};
  const PoseDeviation deviation =
      DeviationOf(found, Diagonal(0.01, 0.04, 0.0001, 0.0025), kInstance, kFrame, {});
  EXPECT_EQ(deviation.num_free, 4);
  EXPECT_NEAR(deviation.squared, 4 + 2.25 + 16 + 4, 1e-9);
}

TEST(PoseDeviation, CorrelationsCount) {
  // For (1, 1) with variances 1 and correlation r the square is 2 / (1 + r).
  std::array<double, 16> covariance = Diagonal(1, 1, 1, 1);
  covariance[1] = covariance[4] = 0.6;
  const PoseDeviation deviation =
      DeviationOf({201, 151, 0.5, 1}, covariance, kInstance, kFrame, {});
  EXPECT_NEAR(deviation.squared, 2 / 1.6, 1e-12);
}

TEST(PoseDeviation, WhatWasGivenIsNotFree) {
  const Similarity found = {201, 150, 0.5, 1};
  const PoseDeviation deviation =
      DeviationOf(found, Diagonal(1, 1, 0.01, 0), kInstance, kFrame, {});
  EXPECT_EQ(deviation.num_free, 3);
  EXPECT_NEAR(deviation.squared, 1, 1e-12);
}

TEST(PoseDeviation, WhatIsNotDeterminedIsNotFreeEither) {
  constexpr double kInfinite = std::numeric_limits<double>::infinity();
  const PoseDeviation deviation =
      DeviationOf({201, 150, 2.5, 1}, Diagonal(1, 1, kInfinite, 1), kInstance, kFrame, {});
  EXPECT_EQ(deviation.num_free, 3);
  EXPECT_NEAR(deviation.squared, 1, 1e-12);
}

TEST(PoseDeviation, SymmetryIsAllowedFor) {
  const std::array<double, 16> covariance = Diagonal(1, 1, 0.01, 0.01);
  const Similarity half_a_turn = {200, 150, 0.5 + kPi, 1};
  EXPECT_NEAR(DeviationOf(half_a_turn, covariance, kInstance, kFrame, {2}).squared, 0, 1e-20);
  const PoseDeviation disc = DeviationOf({200, 150, 2, 1}, covariance, kInstance, kFrame, {0});
  EXPECT_EQ(disc.num_free, 3);
  EXPECT_EQ(disc.squared, 0);
}

TEST(PoseDeviation, TheFoundPoseMayTellAnotherPoint) {
  constexpr PatternFrame kCorner = {80, 60, {0, 0}};
  const Point corner = kInstance * (Point{0, 0} - CentreOf(kCorner));
  const Similarity found = {corner.x, corner.y, kInstance.angle, kInstance.scale};
  EXPECT_NEAR(DeviationOf(found, Diagonal(1, 1, 1, 1), kInstance, kCorner, {}).squared, 0, 1e-20);
}

TEST(PoseDeviation, WithoutAUsableCovarianceThereIsNone) {
  std::array<double, 16> covariance = Diagonal(1, 1, 1, 1);
  covariance[1] = covariance[4] = 2;  // beyond what correlation can be
  EXPECT_TRUE(std::isnan(DeviationOf(kInstance, covariance, kInstance, kFrame, {}).squared));
}

TEST(NinetyFivePercent, OfNormalDeviatesLieBelow) {
  // Nearly normal deviates: sums of 12 uniform ones. The share's own deviation is 0.0022.
  UniformRandom random(/*seed=*/5);
  for (int num_free = 1; num_free <= 4; ++num_free) {
    constexpr int kTrials = 10'000;
    int num_inside = 0;
    for (int trial = 0; trial < kTrials; ++trial) {
      double squared = 0;
      for (int i = 0; i < num_free; ++i) {
        double deviate = -6;
        for (int k = 0; k < 12; ++k)
          deviate += random.Real(0, 1);
        squared += deviate * deviate;
      }
      if (squared <= NinetyFivePercent(num_free)) ++num_inside;
    }
    EXPECT_NEAR(num_inside / double{kTrials}, 0.95, 0.009) << num_free;
  }
}

}  // namespace
}  // namespace orvandel::evaluation::test
