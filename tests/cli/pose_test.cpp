#include "cli/pose.h"

#include <gtest/gtest.h>

#include "base/rounding.h"

namespace orvandel::cli::test {
namespace {

constexpr double kRounding = 1e-12;  // doubles near 100 resolve 1e-14

TEST(Pose, TheReferencePointLandsAtThePosition) {
  const Pose pose = {.position = {100, 50}, .angle = 0.7, .scale = 1.3, .reference = {20, 10}};
  const Point p = pose * pose.reference;
  EXPECT_DOUBLE_EQ(p.x, 100);
  EXPECT_DOUBLE_EQ(p.y, 50);
}

TEST(Pose, APositiveAngleTurnsClockwiseOnTheScreen) {
  // A quarter turn takes what points right to down, where y grows.
  const Pose pose = {.position = {100, 50}, .angle = kPi / 2, .scale = 2, .reference = {20, 10}};
  const Point p = pose * Point{23, 10};
  EXPECT_NEAR(p.x, 100, kRounding);
  EXPECT_NEAR(p.y, 56, kRounding);
}

TEST(NormalizedAngle, LiesInTheHalfOpenTurn) {
  EXPECT_NEAR(NormalizedAngle(3 * kPi), kPi, kRounding);
  EXPECT_NEAR(NormalizedAngle(-7.0), kTwoPi - 7.0, kRounding);
  EXPECT_EQ(NormalizedAngle(1.0), 1.0);
  EXPECT_EQ(NormalizedAngle(-kPi), kPi);
  EXPECT_EQ(NormalizedAngle(kPi), kPi);
}

TEST(Distance, IsEuclidean) {
  EXPECT_DOUBLE_EQ(Distance({1, 1}, {4, 5}), 5);
}

}  // namespace
}  // namespace orvandel::cli::test
