// The verifier as an object: defaults, copies and the ownership of its point arrays. The address
// sanitizer sees to it that every array is released, and only once.

#include <memory>
#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "orvandel/classic/patt_verify.h"
#include "tests/support/same_bits.h"
#include "tests/verify/scene_edges.h"

namespace orvandel::test {
namespace {

/// A verifier with the given number of points: point i at (i, 2 * i), direction i / 10.
CPattVerify VerifierOf(int num_points) {
  std::vector<TestPoint> points;
  for (int i = 0; i < num_points; ++i)
    points.push_back({i * 1.0, i * 2.0, i * 0.1});
  return VerifierOfAll(SetOfPoints(points).get());
}

void ExpectPoints(const CPattVerify& verifier, int num_points) {
  ASSERT_EQ(verifier.pointCount, num_points);
  for (int i = 0; i < num_points; ++i) {
    EXPECT_EQ(verifier.pointX[i], i * 1.0);
    EXPECT_EQ(verifier.pointY[i], i * 2.0);
    EXPECT_EQ(verifier.pointDir[i], i * 0.1);
  }
}

void ExpectNoPoints(const CPattVerify& verifier) {
  EXPECT_EQ(verifier.pointX, nullptr);
  EXPECT_EQ(verifier.pointY, nullptr);
  EXPECT_EQ(verifier.pointDir, nullptr);
  EXPECT_EQ(verifier.pointCount, 0);
}

TEST(Verifier, Defaults) {
  const CPattVerify verifier;
  EXPECT_TRUE(verifier.matchedPositions.empty());
  EXPECT_EQ(verifier.angleTolerance, 0.5235987755982988);  // pi / 6
  EXPECT_EQ(verifier.ignorePolarity, 0);
  EXPECT_EQ(verifier.searchRadius, 5);
  EXPECT_EQ(verifier.probeCount, 0);
  ExpectNoPoints(verifier);
}

TEST(Verifier, CopyTakesEveryField) {
  CPattVerify source = VerifierOf(3);
  source.matchedPositions = {{1, 2}, {3, 4}};
  source.angleTolerance = 0.25;
  source.ignorePolarity = 1;
  source.searchRadius = 7;
  source.probeCount = 9;
  CPattVerify assigned;
  assigned = source;
  for (const CPattVerify& copy : {CPattVerify(source), assigned}) {
    ASSERT_EQ(copy.matchedPositions.size(), 2U);
    EXPECT_EQ(copy.matchedPositions[1].y, 4);
    EXPECT_EQ(copy.angleTolerance, 0.25);
    EXPECT_EQ(copy.ignorePolarity, 1);
    EXPECT_EQ(copy.searchRadius, 7);
    EXPECT_EQ(copy.probeCount, 9);
    ExpectPoints(copy, 3);
  }
}

TEST(Verifier, CopySharesTheArraysOfItsSource) {
  const CPattVerify source = VerifierOf(3);
  const CPattVerify copy(source);
  EXPECT_EQ(copy.pointX, source.pointX);
  EXPECT_EQ(copy.pointY, source.pointY);
  EXPECT_EQ(copy.pointDir, source.pointDir);
}

TEST(Verifier, CopyOfAFreshOneHasNoPoints) {
  const CPattVerify fresh;
  ExpectNoPoints(CPattVerify(fresh));
  CPattVerify assigned = VerifierOf(3);
  assigned = fresh;
  ExpectNoPoints(assigned);
}

TEST(Verifier, CopyOutlivesItsSource) {
  auto source = std::make_unique<CPattVerify>(VerifierOf(5));
  const CPattVerify copy(*source);
  source.reset();
  ExpectPoints(copy, 5);
}

TEST(Verifier, SourceOutlivesItsCopy) {
  const CPattVerify source = VerifierOf(5);
  auto copy = std::make_unique<CPattVerify>(source);
  copy.reset();
  ExpectPoints(source, 5);
}

TEST(Verifier, ChainOfCopiesEndsInAnyOrder) {
  auto first = std::make_unique<CPattVerify>(VerifierOf(5));
  auto second = std::make_unique<CPattVerify>(*first);
  auto third = std::make_unique<CPattVerify>(*second);
  second.reset();
  ExpectPoints(*third, 5);
  first.reset();
  ExpectPoints(*third, 5);
}

TEST(Verifier, AssignmentReleasesOnlyItsOwnShare) {
  CPattVerify a = VerifierOf(5);
  const CPattVerify keeper(a);
  CPattVerify b = VerifierOf(3);
  a = b;
  ExpectPoints(keeper, 5);
  ExpectPoints(a, 3);
  b = VerifierOf(2);
  ExpectPoints(a, 3);
  ExpectPoints(b, 2);
}

TEST(Verifier, AssignmentToItselfKeepsThePoints) {
  CPattVerify verifier = VerifierOf(5);
  const CPattVerify& same = verifier;
  verifier = same;
  ExpectPoints(verifier, 5);
}

TEST(Verifier, AssignmentBetweenSharersKeepsThePoints) {
  CPattVerify source = VerifierOf(5);
  CPattVerify copy(source);
  copy = source;
  source = copy;
  ExpectPoints(source, 5);
  ExpectPoints(copy, 5);
}

TEST(Verifier, ChoosingAgainLeavesTheSharersTheirPoints) {
  CPattVerify source = VerifierOf(5);
  CPattVerify copy(source);
  source.ChooseVerifyPoints(SetOfPoints({{9, 9, 9}}).get(), 1, 1);
  EXPECT_EQ(source.pointCount, 1);
  EXPECT_EQ(source.pointX[0], 9.0);
  ExpectPoints(copy, 5);
  copy.ChooseVerifyPoints(MakeEmptySet().get(), 1, 1);
  EXPECT_EQ(copy.pointCount, 0);
  EXPECT_EQ(source.pointX[0], 9.0);
}

TEST(Verifier, CopyScoresAsItsSource) {
  SceneEdges scene(60, 60);
  for (int i = 0; i < 20; ++i)
    scene.Put(10 + i, 10 + 2 * i, i * 0.1);
  CPattVerify source = VerifierOf(20);
  CPattVerify copy(source);
  for (const double tx : {9.0, 10.0, 12.5, 30.0}) {
    EXPECT_TRUE(SameBits(copy.ScoreAtVerifyPoints(scene.get(), tx, 11, 0.1, 0.9, 0, 0),
                         source.ScoreAtVerifyPoints(scene.get(), tx, 11, 0.1, 0.9, 0, 0)))
        << tx;
  }
}

}  // namespace
}  // namespace orvandel::test
