// The two probes beside the edge normal. Along the contours they are one row or one column off,
// after the sector of the expected direction; at the verification points always one row. A single
// pattern point lands on the pixel (20, 20); pixels are told as (row, column) from there.

#include <utility>

#include <gtest/gtest.h>

#include "tests/support/numbers.h"
#include "tests/verify/scene_edges.h"

namespace orvandel::test {
namespace {

struct Credits {
  double at_points;
  double along_contours;
};

/// What a point of the given direction earns from a single edge of its direction, in percent.
Credits CreditsOf(double degrees, int row, int column) {
  const double direction = degrees * kDegree;
  SceneEdges scene(41, 41);
  scene.Put(20 + column, 20 + row, direction);
  OnePoint point(direction);
  return {point.CreditAt(scene, 20.5, 20.5) * 100, point.CreditAlong(scene, 20.5, 20.5) * 100};
}

TEST(ProbedNeighbours, AreOneRowOffForHorizontalDirections) {
  // Direction 0, distance k: (1, -k) beside (0, -k), and (-1, k) beside (0, k); no other corner.
  for (int k = 1; k <= 5; ++k) {
    const double expected = CreditsOf(0, 0, k).at_points;
    EXPECT_GT(expected, 0) << k;
    for (const auto& [row, column] : {std::pair{1, -k}, std::pair{-1, k}}) {
      EXPECT_EQ(CreditsOf(0, row, column).at_points, expected) << k;
      EXPECT_EQ(CreditsOf(0, row, column).along_contours, expected) << k;
    }
    for (const auto& [row, column] : {std::pair{-1, -k}, std::pair{1, k}}) {
      EXPECT_EQ(CreditsOf(0, row, column).at_points, 0.0) << k;
      EXPECT_EQ(CreditsOf(0, row, column).along_contours, 0.0) << k;
    }
  }
}

TEST(ProbedNeighbours, OfVerticalDirectionsDifferBetweenTheScorers) {
  // Direction 90, distance k: (k, 0) and (-k, 0). Along the contours the neighbours are (k, -1) and
  // (-k, 1); at the verification points (k + 1, 0) and (-k - 1, 0).
  EXPECT_EQ(CreditsOf(90, 1, -1).along_contours, 98.0);
  EXPECT_EQ(CreditsOf(90, -1, 1).along_contours, 98.0);
  EXPECT_EQ(CreditsOf(90, 1, -1).at_points, 0.0);
  EXPECT_EQ(CreditsOf(90, -1, 1).at_points, 0.0);
  EXPECT_EQ(CreditsOf(90, 1, 1).along_contours, 0.0);
  EXPECT_EQ(CreditsOf(90, -1, -1).along_contours, 0.0);

  EXPECT_EQ(CreditsOf(90, 2, 0).along_contours, 94.0);
  EXPECT_EQ(CreditsOf(90, 2, 0).at_points, 98.0);  // neighbour of distance 1
  EXPECT_EQ(CreditsOf(90, -2, 0).at_points, 98.0);
}

TEST(ProbedNeighbours, ReachASixthRowAtTheVerificationPoints) {
  EXPECT_EQ(CreditsOf(90, 6, 0).at_points, 80.0);
  EXPECT_EQ(CreditsOf(90, -6, 0).at_points, 80.0);
  EXPECT_EQ(CreditsOf(90, 6, 0).along_contours, 0.0);
  EXPECT_EQ(CreditsOf(90, 7, 0).at_points, 0.0);
}

TEST(ProbedNeighbours, ComeBeforeTheNextDistance) {
  // Direction 90 with edges two rows down, and one column beside the first row down: the neighbour
  // comes first.
  const double direction = 90 * kDegree;
  SceneEdges scene(41, 41);
  scene.Put(20, 22, direction);  // distance 2
  scene.Put(19, 21, direction);  // neighbour of distance 1 along the contours
  OnePoint point(direction);
  EXPECT_EQ(point.CreditAlong(scene, 20.5, 20.5) * 100, 98.0);
}

// Where the sectors of 0/1 and 2/3 meet, the neighbours change from the row to the column. Half a
// degree to either side the probes of the normal itself are the same.

TEST(ProbedNeighbours, ChangeToTheColumnAtSixtyEightDegrees) {
  // Distance 1 probes (1, 0): neighbours (2, 0) in class 1 and (1, -1) in class 2.
  EXPECT_EQ(CreditsOf(67.9, 2, 0).along_contours, 98.0);
  EXPECT_EQ(CreditsOf(67.9, 1, -1).along_contours, 0.0);
  EXPECT_EQ(CreditsOf(68.1, 2, 0).along_contours, 0.0);
  EXPECT_EQ(CreditsOf(68.1, 1, -1).along_contours, 98.0);
  EXPECT_EQ(CreditsOf(68.1, 2, 0).at_points, 98.0);
  EXPECT_EQ(CreditsOf(68.1, 1, -1).at_points, 0.0);
}

TEST(ProbedNeighbours, ChangeToTheRowAtAHundredAndFiftyEightDegrees) {
  // Distance 1 probes the centre again: neighbours (0, -1) in class 3 and (1, 0) in class 0. (1, 0) is
  // in class 3 the neighbour of distance 2, which probes (1, 1).
  EXPECT_EQ(CreditsOf(157.9, 0, -1).along_contours, 98.0);
  EXPECT_EQ(CreditsOf(158.1, 0, -1).along_contours, 0.0);
  EXPECT_EQ(CreditsOf(157.9, 1, 0).along_contours, 94.0);
  EXPECT_EQ(CreditsOf(158.1, 1, 0).along_contours, 98.0);
}

TEST(ProbedNeighbours, ChangeToTheColumnAtTwoHundredAndFortyEightDegrees) {
  // Distance 1 probes the centre again: neighbours (1, 0) in class 1 and (0, -1) in class 2.
  EXPECT_EQ(CreditsOf(247.9, 1, 0).along_contours, 98.0);
  EXPECT_EQ(CreditsOf(247.9, 0, -1).along_contours, 0.0);
  EXPECT_EQ(CreditsOf(248.1, 0, -1).along_contours, 98.0);
}

TEST(ProbedNeighbours, ChangeToTheRowAtThreeHundredAndThirtyEightDegrees) {
  // Distance 1 probes (0, -1): neighbours (0, -2) in class 3 and (1, -1) in class 0. Distance 2 probes
  // (0, -2) itself.
  EXPECT_EQ(CreditsOf(337.9, 0, -2).along_contours, 98.0);
  EXPECT_EQ(CreditsOf(338.1, 0, -2).along_contours, 94.0);
  EXPECT_EQ(CreditsOf(337.9, 1, -1).along_contours, 0.0);
  EXPECT_EQ(CreditsOf(338.1, 1, -1).along_contours, 98.0);
}

TEST(ProbedNeighbours, ClassIsThatOfTheWrappedDirection) {
  // 450 degrees are 90: class 2, and so are -270.
  for (const double degrees : {450.0, -270.0}) {
    SceneEdges scene(41, 41);
    scene.Put(19, 21, 90 * kDegree);
    EXPECT_EQ(OnePoint(degrees * kDegree).CreditAlong(scene, 20.5, 20.5) * 100, 98.0) << degrees;
  }
}

TEST(ProbedNeighbours, ClassFollowsThePoseAngle) {
  // A point of direction 0 under an angle of -90 degrees is expected at 90.
  SceneEdges scene(41, 41);
  scene.Put(19, 21, 90 * kDegree);
  OnePoint point(0);
  EXPECT_EQ(point.CreditAlong(scene, 20.5, 20.5, -90 * kDegree) * 100, 98.0);
  EXPECT_EQ(point.CreditAt(scene, 20.5, 20.5, -90 * kDegree), 0.0);
}

}  // namespace
}  // namespace orvandel::test
