// The search for an edge along the expected edge normal, to both sides. A single pattern point
// lands on the pixel (20, 20); pixels are told as (row, column) from there.

#include <cmath>
#include <initializer_list>

#include <gtest/gtest.h>

#include "tests/support/numbers.h"
#include "tests/verify/scene_edges.h"

namespace orvandel::test {
namespace {

constexpr double kWeights[] = {0.98, 0.94, 0.9, 0.86, 0.8};  // at distances 1 to 5

struct Place {
  int row;
  int column;
};

/// What a point of that direction earns by the verification points, from edges of its direction.
double CreditFor(double direction, std::initializer_list<Place> edges, int radius = 5) {
  SceneEdges scene(41, 41);
  for (const Place& edge : edges)
    scene.Put(20 + edge.column, 20 + edge.row, direction);
  OnePoint point(direction);
  point.verifier().searchRadius = radius;
  return point.CreditAt(scene, 20.5, 20.5);
}

/// The same along the contours.
double CreditAlong(double direction, std::initializer_list<Place> edges) {
  SceneEdges scene(41, 41);
  for (const Place& edge : edges)
    scene.Put(20 + edge.column, 20 + edge.row, direction);
  return OnePoint(direction).CreditAlong(scene, 20.5, 20.5);
}

/// The credit of a single point whose one weight is w.
double CreditOf(double w) {
  return (w * 100) / 1 / 100;
}

TEST(EdgeNormal, CreditFallsWithTheDistanceOnEitherSide) {
  // Direction 0: the normal runs along the row.
  for (int k = 1; k <= 5; ++k) {
    const double expected = CreditOf(kWeights[k - 1]);
    for (const int side : {-1, 1}) {
      EXPECT_EQ(CreditFor(0, {{0, side * k}}), expected) << side * k;
      EXPECT_EQ(CreditAlong(0, {{0, side * k}}), expected) << side * k;
    }
  }
}

TEST(EdgeNormal, DistanceSixEarnsNothing) {
  for (const int side : {-1, 1}) {
    EXPECT_EQ(CreditFor(0, {{0, side * 6}}), 0.0);
    EXPECT_EQ(CreditAlong(0, {{0, side * 6}}), 0.0);
    EXPECT_EQ(CreditAlong(kPi / 2, {{side * 6, 0}}), 0.0);
  }
}

TEST(EdgeNormal, RunsDownTheColumnForVerticalDirections) {
  for (int k = 1; k <= 5; ++k) {
    for (const int side : {-1, 1}) {
      EXPECT_EQ(CreditAlong(kPi / 2, {{side * k, 0}}), CreditOf(kWeights[k - 1])) << side * k;
      EXPECT_EQ(CreditAlong(kPi / 2, {{0, side * k}}), 0.0) << side * k;
    }
  }
}

TEST(EdgeNormal, RunsUpToTheRightForFortyFiveDegrees) {
  // k * 0.7071 + 0.5 truncates to 1, 1, 2, 3, 4: the normal passes (-1, 1), (-2, 2), (-3, 3),
  // (-4, 4) and their mirror images; distance 2 probes the pixels of distance 1 again.
  const double direction = 45 * kDegree;
  const double at_steps[] = {0.98, 0.9, 0.86, 0.8};
  for (int k = 1; k <= 4; ++k) {
    EXPECT_EQ(CreditFor(direction, {{-k, k}}), CreditOf(at_steps[k - 1])) << k;
    EXPECT_EQ(CreditFor(direction, {{k, -k}}), CreditOf(at_steps[k - 1])) << k;
    EXPECT_EQ(CreditFor(direction, {{k, k}}), 0.0) << k;
  }
}

TEST(EdgeNormal, NearestMatchCounts) {
  EXPECT_EQ(CreditFor(0, {{0, 4}, {0, -2}, {0, 5}}), CreditOf(0.94));
  EXPECT_EQ(CreditFor(0, {{0, 3}, {0, 1}}), CreditOf(0.98));
  EXPECT_EQ(CreditFor(0, {{0, 0}, {0, 1}, {0, -1}}), 1.0);
}

TEST(EdgeNormal, EdgeOfAnotherDirectionIsPassedOver) {
  SceneEdges scene(41, 41);
  scene.Put(20, 20, 1.0);
  scene.Put(21, 20, -1.0);
  scene.Put(23, 20, 0.1);
  EXPECT_EQ(OnePoint(0).CreditAt(scene, 20.5, 20.5), CreditOf(0.9));
}

TEST(EdgeNormal, RadiusBoundsTheSearch) {
  EXPECT_EQ(CreditFor(0, {{0, 0}}, 0), 1.0);
  EXPECT_EQ(CreditFor(0, {{0, 1}}, 0), 0.0);
  EXPECT_EQ(CreditFor(0, {{0, 1}}, 1), CreditOf(0.98));
  EXPECT_EQ(CreditFor(0, {{0, 2}}, 1), 0.0);
}

TEST(EdgeNormal, RadiusNineReachesAllWeights) {
  const double weights[] = {0.98, 0.94, 0.9, 0.86, 0.8, 0.75, 0.7, 0.64, 0.6};
  for (int k = 1; k <= 9; ++k)
    EXPECT_EQ(CreditFor(0, {{0, k}}, 9), CreditOf(weights[k - 1])) << k;
  EXPECT_EQ(CreditFor(0, {{0, 10}}, 9), 0.0);
}

TEST(EdgeNormal, NegativeOffsetsAreTruncatedTowardZero) {
  // sin = -0.65, cos = 0.76. At distance 2 the row offset is trunc(-1.3 + 0.5) = 0, where rounding
  // would give -1; so (-1, -2) is only reached at distance 3, by trunc(-1.95 + 0.5) = -1.
  const double shallow = 2 * kPi - std::asin(0.65);
  EXPECT_EQ(CreditFor(shallow, {{-1, -2}}), CreditOf(0.9));
  EXPECT_EQ(CreditFor(shallow, {{0, -2}}), CreditOf(0.94));

  // sin = -0.7, cos = 0.714. At distance 1 the row offset is trunc(-0.7 + 0.5) = 0 and at distance
  // 2 trunc(-1.4 + 0.5) = 0, both in column -1; distance 3 goes on to (-1, -2). So the diagonal
  // pixel (-1, -1), where rounding would look first, is never reached.
  const double diagonal = 2 * kPi - std::asin(0.7);
  EXPECT_EQ(CreditFor(diagonal, {{0, -1}}), CreditOf(0.98));
  EXPECT_EQ(CreditFor(diagonal, {{-1, -1}}), 0.0);
  EXPECT_EQ(CreditFor(diagonal, {{-1, -2}}), CreditOf(0.9));

  // sin = -0.8, cos = 0.6. At distance 2 the row offset is trunc(-1.6 + 0.5) = -1.
  const double steep = 2 * kPi - std::asin(0.8);
  EXPECT_EQ(CreditFor(steep, {{-1, -1}}), CreditOf(0.94));
}

TEST(EdgeNormal, NegativeColumnOffsetsAreTruncatedTowardZeroToo) {
  // cos = -0.7, sin = 0.714: the column offset at distance 1 is trunc(-0.7 + 0.5) = 0.
  const double direction = std::acos(-0.7);
  EXPECT_EQ(CreditFor(direction, {{1, 0}}), CreditOf(0.98));
  EXPECT_EQ(CreditFor(direction, {{-1, 0}}), CreditOf(0.98));
  // cos = -1: k * cos + 0.5 truncates to 0, -1, -2, -3, -4, so distance k probes k - 1 pixels away.
  for (int k = 2; k <= 5; ++k) {
    EXPECT_EQ(CreditAlong(kPi, {{0, k - 1}}), CreditOf(kWeights[k - 1])) << k;
    EXPECT_EQ(CreditAlong(kPi, {{0, 1 - k}}), CreditOf(kWeights[k - 1])) << k;
  }
  EXPECT_EQ(CreditAlong(kPi, {{0, 5}}), 0.0);
}

}  // namespace
}  // namespace orvandel::test
