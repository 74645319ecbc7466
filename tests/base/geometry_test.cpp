#include "base/geometry.h"

#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "base/rounding.h"
#include "tests/support/uniform_random.h"

namespace orvandel {
namespace {

// Doubles near 1000 resolve 1e-13; a handful of operations lose a digit or two.
constexpr double kRoundingPx = 1e-10;

std::vector<Similarity> SomeSimilarities() {
  test::UniformRandom random(7);
  std::vector<Similarity> similarities = {{}, {3, -4, 0, 1}, {0, 0, kPi / 2, 1}, {0, 0, 0, 0.25}};
  for (int i = 0; i < 50; ++i) {
    similarities.push_back({random.Real(-1000, 1000), random.Real(-1000, 1000),
                            random.Real(-10, 10), random.Real(0.25, 4)});
  }
  return similarities;
}

void ExpectNear(Point actual, Point expected) {
  EXPECT_NEAR(actual.x, expected.x, kRoundingPx);
  EXPECT_NEAR(actual.y, expected.y, kRoundingPx);
}

constexpr Point kPoint = {12.5, -7.25};

TEST(Similarity, APositiveQuarterTurnTakesRightToDown) {
  ExpectNear(Similarity{10, 20, kPi / 2, 2} * Point{3, 0}, {10, 26});
}

TEST(Similarity, InverseReturnsThePoint) {
  for (const Similarity& scene_from_pattern : SomeSimilarities())
    ExpectNear(Inverse(scene_from_pattern) * (scene_from_pattern * kPoint), kPoint);
}

TEST(Similarity, AProductMapsAsItsFactorsOneAfterTheOther) {
  for (const Similarity& a : SomeSimilarities()) {
    for (const Similarity& b : SomeSimilarities())
      ExpectNear((a * b) * kPoint, a * (b * kPoint));
  }
}

TEST(NormalizedAngle, LiesBehindMinusPiAndUpToPi) {
  EXPECT_EQ(NormalizedAngle(0.5), 0.5);
  EXPECT_EQ(NormalizedAngle(kPi), kPi);
  EXPECT_EQ(NormalizedAngle(-kPi), kPi);
  EXPECT_NEAR(NormalizedAngle(6.5 * kPi), kPi / 2, 1e-14);
  EXPECT_NEAR(NormalizedAngle(-0.5 - 4 * kTwoPi), -0.5, 1e-14);
}

TEST(NormalizedAngle, IsNoNumberWhereTheAngleIsNotFinite) {
  const double infinity = std::numeric_limits<double>::infinity();
  EXPECT_NE(NormalizedAngle(infinity), NormalizedAngle(infinity));
}

}  // namespace
}  // namespace orvandel
