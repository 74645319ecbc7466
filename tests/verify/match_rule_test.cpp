// Which edge matches an expected direction. A single pattern point lands on the pixel (20, 20).

#include <cmath>

#include <gtest/gtest.h>

#include "tests/support/numbers.h"
#include "tests/verify/scene_edges.h"

namespace orvandel::test {
namespace {

constexpr double kTolerance = 0.5235987755982988;  // pi / 6

/// What a point of direction `expected` earns where the only edge, of direction `found`, lies in
/// its very pixel.
double CreditFor(double expected, double found, int ignore_polarity = 0) {
  SceneEdges scene(41, 41);
  scene.Put(20, 20, found);
  OnePoint point(expected);
  point.verifier().ignorePolarity = ignore_polarity;
  const double at_points = point.CreditAt(scene, 20.5, 20.5);
  EXPECT_EQ(point.CreditAlong(scene, 20.5, 20.5), at_points);
  return at_points;
}

TEST(MatchRule, ExactDirectionInTheVeryPixelEarnsOne) {
  for (const double direction : {0.0, 0.3, 1.0, kPi / 2, 3.0})
    EXPECT_EQ(CreditFor(direction, direction), 1.0) << direction;
}

TEST(MatchRule, EdgeElsewhereDoesNotCount) {
  SceneEdges scene(41, 41);
  scene.Put(30, 30, 0);
  EXPECT_EQ(OnePoint(0).CreditAt(scene, 20.5, 20.5), 0.0);
}

TEST(MatchRule, DirectionMustBeStoredAsPresent) {
  SceneEdges scene(41, 41);
  scene.get()->g[20 * 41 + 20] = 0;
  EXPECT_EQ(OnePoint(0).CreditAt(scene, 20.5, 20.5), 0.0);
  scene.get()->valid[20 * 41 + 20] = 255;  // any non-zero byte is presence
  EXPECT_EQ(OnePoint(0).CreditAt(scene, 20.5, 20.5), 1.0);
}

TEST(MatchRule, DifferenceOfExactlyTheToleranceDoesNotMatch) {
  EXPECT_EQ(CreditFor(kTolerance, 0), 0.0);
  EXPECT_EQ(CreditFor(std::nextafter(kTolerance, 0.0), 0), 1.0);
  EXPECT_EQ(CreditFor(0, kTolerance), 0.0);
  EXPECT_EQ(CreditFor(0, std::nextafter(kTolerance, 0.0)), 1.0);
  EXPECT_EQ(CreditFor(0, -kTolerance), 0.0);
}

TEST(MatchRule, OppositeDirectionMatchesOnlyWithoutPolarity) {
  EXPECT_EQ(CreditFor(kPi, 0, 0), 0.0);
  EXPECT_EQ(CreditFor(kPi, 0, 1), 1.0);
  EXPECT_EQ(CreditFor(0, -kPi, 0), 0.0);
  EXPECT_EQ(CreditFor(0, -kPi, 1), 1.0);
  EXPECT_EQ(CreditFor(0, -kPi, -5), 1.0);  // any non-zero value
}

TEST(MatchRule, OppositeDirectionHasTheSameStrictTolerance) {
  const double limit = kPi - kTolerance;
  EXPECT_EQ(CreditFor(limit, 0, 1), 0.0);
  EXPECT_EQ(CreditFor(std::nextafter(limit, 4.0), 0, 1), 1.0);
  EXPECT_EQ(CreditFor(std::nextafter(limit, 4.0), 0, 0), 0.0);
}

TEST(MatchRule, DirectionsAcrossTheTurnMatch) {
  EXPECT_EQ(CreditFor(2 * kPi - 0.1, 0.1), 1.0);  // 0.2 apart
  EXPECT_EQ(CreditFor(-0.1, 0.1), 1.0);           // expected becomes 2 pi - 0.1
  EXPECT_EQ(CreditFor(kPi + 0.1, -kPi), 1.0);     // pi itself is stored as -pi
  EXPECT_EQ(CreditFor(kPi - 0.1, -kPi + 0.1), 1.0);
}

TEST(MatchRule, DifferenceBeyondAFullTurnIsFoldedOnceAndMatches) {
  // 1.9 pi against -0.5 pi: 2.4 pi is folded to -0.4 pi, which is below the tolerance though the
  // directions are 72 degrees apart.
  for (const int ignore_polarity : {0, 1})
    EXPECT_EQ(CreditFor(1.9 * kPi, -0.5 * kPi, ignore_polarity), 1.0);
}

TEST(MatchRule, EveryExpectedDirectionBeyondANegativeStoredOneMatches) {
  // Stored directions below 0 lie up to three half turns from expected ones, which lie in one turn
  // from 0. The match begins 30 degrees before the stored direction, and from there to the full
  // turn the fold leaves a small or a negative difference.
  for (const int stored : {-180, -120, -90, -45}) {
    const int begin = 360 + stored - 30;
    for (int expected = 1; expected < 360; ++expected) {
      if (expected == begin) continue;  // the tolerance itself, but for rounding
      const double credit = CreditFor(expected * kPi / 180, stored * kPi / 180);
      EXPECT_EQ(credit, expected > begin ? 1.0 : 0.0) << expected << " against " << stored;
    }
  }
}

TEST(MatchRule, ExpectedDirectionIsWrappedIntoOneTurn) {
  for (const int turns : {-3, -1, 1, 3})
    EXPECT_EQ(CreditFor(0.4 + turns * 2 * kPi, 0.4), 1.0) << turns;
}

TEST(MatchRule, FullTurnItselfIsNotWrapped) {
  // 2 pi is not above 2 pi: its difference from -1.5 is 7.78, folded to -1.5, a match, where 0
  // would differ by 1.5.
  EXPECT_EQ(CreditFor(2 * kPi, -1.5), 1.0);
  EXPECT_EQ(CreditFor(0, -1.5), 0.0);
}

TEST(MatchRule, ToleranceIsTheVerifiers) {
  SceneEdges scene(41, 41);
  scene.Put(20, 20, 0);
  OnePoint point(0.8);
  EXPECT_EQ(point.CreditAt(scene, 20.5, 20.5), 0.0);
  point.verifier().angleTolerance = 0.9;
  EXPECT_EQ(point.CreditAt(scene, 20.5, 20.5), 1.0);
}

TEST(MatchRule, StoredDirectionThatIsNotANumberMatchesNothing) {
  EXPECT_EQ(CreditFor(0.5, std::nan(""), 0), 0.0);
  EXPECT_EQ(CreditFor(0.5, std::nan(""), 1), 0.0);
}

}  // namespace
}  // namespace orvandel::test
