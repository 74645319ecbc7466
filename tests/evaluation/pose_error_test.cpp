#include "evaluation/pose_error.h"

#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "base/rounding.h"
#include "tests/evaluation/case_results.h"

namespace orvandel::evaluation::test {
namespace {

constexpr double kRounding = 1e-12;  // doubles near 100 resolve 1e-14

constexpr Similarity kTruth = {200, 150, 0.5, 1};

Similarity Rotated(Similarity pose, double radians) {
  pose.angle += radians;
  return pose;
}

TEST(PoseError, AShiftMovesEveryCorner) {
  const PoseError error = ErrorOf(Shifted(kTruth, 3), kTruth, kFrame);
  EXPECT_NEAR(error.corner_px, 3, kRounding);
  EXPECT_EQ(error.angle_deg, 0);
  EXPECT_EQ(error.scale_percent, 0);
}

TEST(PoseError, AScaleMovesEachCornerByItsShareOfTheHalfDiagonal) {
  Similarity larger = kTruth;
  larger.scale = 1.02;
  const PoseError error = ErrorOf(larger, kTruth, kFrame);
  EXPECT_NEAR(error.corner_px, 0.02 * 50, kRounding);
  EXPECT_NEAR(error.scale_percent, 2, 1e-9);
}

TEST(PoseError, ARotationMovesEachCornerByTheChord) {
  const PoseError error = ErrorOf(Rotated(kTruth, 0.01), kTruth, kFrame);
  EXPECT_NEAR(error.corner_px, 2 * 50 * std::sin(0.005), kRounding);
  EXPECT_NEAR(error.angle_deg, 0.01 * 180 / kPi, 1e-9);
}

TEST(PoseError, AnglesAreComparedAroundTheCircle) {
  Similarity truth = kTruth;
  truth.angle = kPi - 0.01;
  Similarity found = kTruth;
  found.angle = -kPi + 0.01;
  EXPECT_NEAR(ErrorOf(found, truth, kFrame).angle_deg, 0.02 * 180 / kPi, 1e-9);
}

TEST(PoseError, DoesNotDependOnTheOriginThatThePoseTellsThePlaceOf) {
  PatternFrame frame = kFrame;
  frame.origin = {10, 20};
  const Point centre = {39.5, 29.5};
  const Point at = kTruth * (frame.origin - centre);
  const Similarity found = {at.x, at.y, kTruth.angle, kTruth.scale};
  EXPECT_NEAR(ErrorOf(found, kTruth, frame).corner_px, 0, kRounding);
}

TEST(Symmetry, AnglesCountModuloTheFold) {
  for (const int fold : {2, 3, 4, 6}) {
    const double step = kTwoPi / fold;
    for (int k = -fold; k <= fold; ++k) {
      const PoseError error =
          ErrorOf(Rotated(kTruth, k * step + 0.01), kTruth, kFrame, Symmetry{fold});
      EXPECT_NEAR(error.angle_deg, 0.01 * 180 / kPi, 1e-9) << fold << "-fold, step " << k;
      EXPECT_NEAR(error.corner_px, 2 * 50 * std::sin(0.005), 1e-10) << fold << "-fold, step " << k;
    }
  }
}

TEST(Symmetry, HalfAStepIsTheLargestError) {
  // 45 degrees either way from a pose that looks the same.
  const PoseError error = ErrorOf(Rotated(kTruth, kPi / 4), kTruth, kFrame, Symmetry{4});
  EXPECT_NEAR(error.angle_deg, 45, 1e-9);
}

TEST(Symmetry, WithoutOneOnlyTheFullTurnLooksTheSame) {
  EXPECT_NEAR(ErrorOf(Rotated(kTruth, kPi), kTruth, kFrame).angle_deg, 180, 1e-9);
  EXPECT_NEAR(ErrorOf(Rotated(kTruth, kTwoPi), kTruth, kFrame).corner_px, 0, 1e-10);
}

TEST(Symmetry, FullCirclesAreComparedByCentreAndScaleAlone) {
  constexpr Symmetry kFullCircle{0};
  const Similarity rotated = Rotated(kTruth, 1.234);
  EXPECT_NEAR(ErrorOf(rotated, kTruth, kFrame, kFullCircle).corner_px, 0, kRounding);
  EXPECT_EQ(ErrorOf(rotated, kTruth, kFrame, kFullCircle).angle_deg, 0);
  EXPECT_NEAR(ErrorOf(Shifted(rotated, 2), kTruth, kFrame, kFullCircle).corner_px, 2, kRounding);
  Similarity larger = rotated;
  larger.scale = 1.1;
  EXPECT_NEAR(ErrorOf(larger, kTruth, kFrame, kFullCircle).corner_px, 0.1 * 50, kRounding);
}

TEST(CornerTolerance, IsFivePercentOfTheDiagonal) {
  EXPECT_DOUBLE_EQ(CornerTolerancePx(kFrame), 5);
}

TEST(ScaledCornerTolerance, IsThreePercentOfTheScaledDiagonal) {
  EXPECT_DOUBLE_EQ(ScaledCornerTolerancePx(kFrame, 1), 3);
  EXPECT_DOUBLE_EQ(ScaledCornerTolerancePx(kFrame, 2), 6);
}

TEST(ScaledCornerTolerance, IsNeverBelowOneAndAHalfPixels) {
  EXPECT_DOUBLE_EQ(ScaledCornerTolerancePx(kFrame, 0.5), 1.5);
  EXPECT_DOUBLE_EQ(ScaledCornerTolerancePx(kFrame, 0.25), 1.5);
}

TEST(ScaledCornerTolerance, GrowsByWhatTheTruthItselfIsOff) {
  EXPECT_DOUBLE_EQ(ScaledCornerTolerancePx(kFrame, 1, 1.65), 4.65);
  EXPECT_DOUBLE_EQ(ScaledCornerTolerancePx(kFrame, 0.1, 0.5), 2);
}

TEST(Degrees, AreTheInverseOfRadians) {
  EXPECT_DOUBLE_EQ(Degrees(kPi), 180);
  EXPECT_DOUBLE_EQ(Radians(-90), -kPi / 2);
}

}  // namespace
}  // namespace orvandel::evaluation::test
