// Where a pose lays the pattern's points, and which pixels may be scored.

#include <algorithm>
#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/numbers.h"
#include "tests/verify/scene_edges.h"

namespace orvandel::test {
namespace {

/// Whether a single point of direction 0 hits an edge in the given pixel of an otherwise empty
/// scene of 41 x 31 pixels, for a point at (x, y) of a pattern with the reference point (5, 7).
struct Hit {
  int column;
  int row;
  bool By(double x, double y, double tx, double ty, double angle, double scale) const {
    SceneEdges scene(41, 31);
    scene.Put(column, row, -angle);
    const ContourHandle set = SetOfPoints({{x, y, 0, 0}});
    CPattVerify verifier = VerifierOfAll(set.get());
    const double at_points = verifier.ScoreAtVerifyPoints(scene.get(), tx, ty, angle, scale, 5, 7);
    EXPECT_EQ(verifier.ScoreAlongContours(set.get(), scene.get(), tx, ty, angle, scale, 5, 7, 1),
              at_points);
    return at_points == 100.0;
  }
};

TEST(ScoredPose, ReferencePointLandsOnThePosition) {
  EXPECT_TRUE((Hit{20, 15}.By(5, 7, 20.0, 15.0, 0, 1)));
  EXPECT_TRUE((Hit{20, 15}.By(5, 7, 20.5, 15.5, 1.1, 2.2)));
}

TEST(ScoredPose, PositionIsTruncatedToItsPixel) {
  EXPECT_TRUE((Hit{20, 15}.By(5, 7, 20.999, 15.999, 0, 1)));
  EXPECT_FALSE((Hit{21, 15}.By(5, 7, 20.999, 15.999, 0, 1)));
}

TEST(ScoredPose, PositiveAngleTurnsFromRightToDown) {
  // (x, y) = reference + (4, 0) goes to (0, 4) below the position, and (0, 4) to (-4, 0).
  EXPECT_TRUE((Hit{20, 19}.By(9, 7, 20.5, 15.5, kPi / 2, 1)));
  EXPECT_TRUE((Hit{16, 15}.By(5, 11, 20.5, 15.5, kPi / 2, 1)));
  EXPECT_TRUE((Hit{20, 11}.By(9, 7, 20.5, 15.5, -kPi / 2, 1)));
}

TEST(ScoredPose, ScaleStretchesFromTheReferencePoint) {
  EXPECT_TRUE((Hit{28, 15}.By(9, 7, 20.5, 15.5, 0, 2)));
  EXPECT_TRUE((Hit{22, 15}.By(9, 7, 20.5, 15.5, 0, 0.5)));
  EXPECT_TRUE((Hit{16, 15}.By(9, 7, 20.5, 15.5, 0, -1)));  // a mirror image, but nothing forbids it
}

TEST(ScoredPose, TurnsAndScalesTogether) {
  // (3, 4) rotated by 3-4-5's angle and doubled: cos = 0.6, sin = 0.8 gives (-1.4, 4.8) * 2.
  const double angle = std::atan2(4, 3);
  EXPECT_TRUE((Hit{17, 24}.By(8, 11, 20.5, 15.0, angle, 2)));
}

TEST(ScoredPose, DirectionsTurnAgainstThePositions) {
  // A gradient direction g is expected as g - angle.
  SceneEdges scene(41, 41);
  scene.Put(20, 20, 1.0 - 0.7);
  OnePoint point(1.0);
  EXPECT_EQ(point.CreditAt(scene, 20.5, 20.5, 0.7), 1.0);
  EXPECT_EQ(point.CreditAlong(scene, 20.5, 20.5, 0.7), 1.0);
  EXPECT_EQ(point.CreditAt(scene, 20.5, 20.5, -0.7), 0.0);
}

TEST(ScoredPose, ScaleZeroLaysEveryPointOnThePosition) {
  SceneEdges scene(41, 41);
  scene.Put(20, 21, 0);
  const ContourHandle set = SetOfPoints({{0, 0, 0, 0}, {100, 0, 0, 0}, {-50, 70, 0, 0}});
  CPattVerify verifier = VerifierOfAll(set.get());
  EXPECT_EQ(verifier.ScoreAtVerifyPoints(scene.get(), 20.9, 21.9, 0, 0, 3, 4), 100.0);
  EXPECT_EQ(verifier.ScoreAlongContours(set.get(), scene.get(), 20.9, 21.9, 0, 0, 3, 4, 1), 100.0);
}

TEST(ScoredPose, TermsAreAddedFromLeftToRight) {
  // Doubles just below 20 are 3.6e-15 apart. 20 takes up two terms of -1e-15 one by one without
  // change; added up before, they would take it to the double below, in pixel 19.
  constexpr double kAngle = 0.7;
  const double c = std::cos(kAngle);
  const double s = std::sin(kAngle);
  SceneEdges scene(41, 41);
  scene.Put(20, 20, 0);
  const auto credit = [&](double dx, double dy, double tx, double ty) {
    const ContourHandle set = SetOfPoints({{dx, dy, kAngle, 0}});
    CPattVerify verifier = VerifierOfAll(set.get());
    return verifier.ScoreAtVerifyPoints(scene.get(), tx, ty, kAngle, 1, 0, 0);
  };
  EXPECT_EQ(credit(-1e-15 / c, 1e-15 / s, 20, 20.5), 100.0);   // column
  EXPECT_EQ(credit(-1e-15 / s, -1e-15 / c, 20.5, 20), 100.0);  // row
}

/// Scores of a single point in a scene of 40 x 30 pixels that is full of matching edges.
bool IsAdmissible(double x, double y, int radius = 5) {
  SceneEdges scene(40, 30);
  for (int row = 0; row < 30; ++row) {
    for (int column = 0; column < 40; ++column)
      scene.Put(column, row, 0);
  }
  OnePoint point(0);
  point.verifier().searchRadius = radius;
  const double at_points = point.CreditAt(scene, x, y);
  EXPECT_TRUE(at_points == 0.0 || at_points == 1.0);
  EXPECT_EQ(point.CreditAlong(scene, x, y), at_points);
  return at_points == 1.0;
}

TEST(ScoredPose, CentresKeepAwayFromTheBorder) {
  // Radius 5: columns 6 to 33 of 40, rows 6 to 23 of 30.
  EXPECT_FALSE(IsAdmissible(5.9, 15));
  EXPECT_TRUE(IsAdmissible(6.0, 15));
  EXPECT_TRUE(IsAdmissible(33.9, 15));
  EXPECT_FALSE(IsAdmissible(34.0, 15));
  EXPECT_FALSE(IsAdmissible(20, 5.9));
  EXPECT_TRUE(IsAdmissible(20, 6.0));
  EXPECT_TRUE(IsAdmissible(20, 23.9));
  EXPECT_FALSE(IsAdmissible(20, 24.0));
}

TEST(ScoredPose, BorderIsAsWideAsTheRadius) {
  EXPECT_FALSE(IsAdmissible(0.9, 15, 0));
  EXPECT_TRUE(IsAdmissible(1.0, 15, 0));
  EXPECT_TRUE(IsAdmissible(38.9, 15, 0));
  EXPECT_FALSE(IsAdmissible(39.0, 15, 0));
  EXPECT_FALSE(IsAdmissible(9.9, 15, 9));
  EXPECT_TRUE(IsAdmissible(10, 19.9, 9));
  EXPECT_FALSE(IsAdmissible(10, 20, 9));
}

TEST(ScoredPose, SceneTooSmallForTheRadiusHasNoAdmissiblePixel) {
  // 12 columns: none between 5 and 6 exclusive; 13 columns: column 6.
  for (const int width : {1, 5, 11, 12, 13}) {
    SceneEdges scene(width, 13);
    for (int column = 0; column < width; ++column)
      scene.Put(column, 6, 0);
    double best = 0;
    for (int column = -2; column < width + 2; ++column)
      best = std::max(best, OnePoint(0).CreditAt(scene, column + 0.5, 6.5));
    EXPECT_EQ(best, width >= 13 ? 1.0 : 0.0) << width;
  }
}

TEST(ScoredPose, PositionsBelowZeroAreOutside) {
  EXPECT_FALSE(IsAdmissible(-0.5, 15));
  EXPECT_FALSE(IsAdmissible(-20, 15));
  EXPECT_FALSE(IsAdmissible(20, -1e300));
}

TEST(ScoredPose, PosesThatAreNotFiniteScoreNothing) {
  SceneEdges scene(41, 41);
  scene.Put(20, 20, 0);
  const ContourHandle set = SetOfPoints({{1, 2, 0, 0}});
  CPattVerify verifier = VerifierOfAll(set.get());
  for (const double bad : {std::nan(""), kInfinity, -kInfinity, 1e300, -1e300, 4294967316.5}) {
    const double poses[][6] = {{bad, 20, 0, 1, 0, 0},  {20, bad, 0, 1, 0, 0},
                               {20, 20, bad, 1, 0, 0}, {20, 20, 0, bad, 0, 0},
                               {20, 20, 0, 1, bad, 0}, {20, 20, 0, 1, 0, bad}};
    for (const auto& p : poses) {
      EXPECT_EQ(verifier.ScoreAtVerifyPoints(scene.get(), p[0], p[1], p[2], p[3], p[4], p[5]), 0.0);
      EXPECT_EQ(verifier.ScoreAlongContours(set.get(), scene.get(), p[0], p[1], p[2], p[3], p[4],
                                            p[5], 1),
                0.0);
    }
  }
}

TEST(ScoredPose, DirectionsThatAreNotFiniteScoreNothing) {
  SceneEdges scene(41, 41);
  scene.Put(20, 20, 0);
  for (const double bad : {std::nan(""), kInfinity, -kInfinity}) {
    EXPECT_EQ(OnePoint(bad).CreditAt(scene, 20.5, 20.5), 0.0);
    EXPECT_EQ(OnePoint(bad).CreditAlong(scene, 20.5, 20.5), 0.0);
  }
}

TEST(ScoredPose, DirectionMayDifferFromTheAngleByAMillion) {
  // With a tolerance above every difference only a point that is passed over earns nothing.
  SceneEdges scene(41, 41);
  scene.Put(20, 20, 0);
  const auto credit = [&scene](double direction, double angle) {
    OnePoint point(direction);
    point.verifier().angleTolerance = 10;
    const double at_points = point.CreditAt(scene, 20.5, 20.5, angle);
    EXPECT_EQ(point.CreditAlong(scene, 20.5, 20.5, angle), at_points);
    return at_points;
  };
  for (const double sign : {-1.0, 1.0}) {
    EXPECT_EQ(credit(sign * 1e6, 0), 1.0);
    EXPECT_EQ(credit(sign * std::nextafter(1e6, 2e6), 0), 0.0);
    EXPECT_EQ(credit(sign * 1e300, 0), 0.0);
    EXPECT_EQ(credit(sign * 2e6, sign * 1e6), 1.0);
    EXPECT_EQ(credit(0, sign * 1e6), 1.0);
    EXPECT_EQ(credit(0, sign * 1.000001e6), 0.0);
  }
}

TEST(ScoredPose, RowAndColumnCountModulo65536) {
  // In a scene of 66 100 columns a point in column 66 000 looks at column 464.
  SceneEdges scene(66100, 13);
  scene.Put(464, 6, 0);
  EXPECT_EQ(OnePoint(0).CreditAt(scene, 66000.5, 6.5), 1.0);
  EXPECT_EQ(OnePoint(0).CreditAlong(scene, 66000.5, 6.5), 1.0);
  EXPECT_EQ(OnePoint(0).CreditAt(scene, 464.5, 6.5), 1.0);
  EXPECT_EQ(OnePoint(0).CreditAt(scene, 65536.5 + 463, 6.5), 0.98);

  SceneEdges high_scene(13, 66100);
  high_scene.Put(6, 464, 0);
  EXPECT_EQ(OnePoint(0).CreditAt(high_scene, 6.5, 66000.5), 1.0);
  EXPECT_EQ(OnePoint(0).CreditAlong(high_scene, 6.5, 66000.5), 1.0);
}

}  // namespace
}  // namespace orvandel::test
