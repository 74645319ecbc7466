// How single points make up a score: which are counted, and what divides the sum.

#include <cmath>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/same_bits.h"
#include "tests/verify/scene_edges.h"

namespace orvandel::test {
namespace {

/// Points at x = 0 .. count - 1, y = 0, direction 0.
TestContour RowOfPoints(int count) {
  TestContour contour;
  for (int i = 0; i < count; ++i)
    contour.points.push_back({static_cast<double>(i), 0, 0, 0});
  return contour;
}

constexpr int kLeft = 10;  // where the pattern's point 0 is laid
constexpr int kRow = 12;

/// A scene with edges in the pixels of the given points only. The normal runs along the row, so the
/// points beside an edge find it as well.
class PointScene {
 public:
  explicit PointScene(const std::vector<int>& points) : scene_(60, 25) {
    for (const int i : points)
      scene_.Put(kLeft + i, kRow, 0);
  }
  double AtPoints(CPattVerify& verifier) const {
    return verifier.ScoreAtVerifyPoints(scene_.get(), kLeft + 0.5, kRow + 0.5, 0, 1, 0, 0);
  }
  double Along(void* contours, int step) const {
    return CPattVerify().ScoreAlongContours(contours, scene_.get(), kLeft + 0.5, kRow + 0.5, 0, 1,
                                            0, 0, step);
  }

 private:
  SceneEdges scene_;
};

TEST(ScoredPoints, AllOnTheirEdgesScoreAHundred) {
  const ContourHandle set = MakeSet({RowOfPoints(10)});
  const PointScene scene({0, 1, 2, 3, 4, 5, 6, 7, 8, 9});
  CPattVerify verifier = VerifierOfAll(set.get());
  EXPECT_EQ(scene.AtPoints(verifier), 100.0);
  EXPECT_EQ(scene.Along(set.get(), 1), 100.0);
}

TEST(ScoredPoints, SumIsTakenInPointOrderTimesHundredOverTheCount) {
  // One edge under point 3 of ten: it earns 1, its neighbours 0.98 to 0.8 as far as five away.
  const ContourHandle set = MakeSet({RowOfPoints(10)});
  const PointScene scene({3});
  double sum = 0;
  for (const double credit : {0.9, 0.94, 0.98, 1.0, 0.98, 0.94, 0.9, 0.86, 0.8, 0.0})
    sum += credit;
  CPattVerify verifier = VerifierOfAll(set.get());
  EXPECT_TRUE(SameBits(scene.AtPoints(verifier), (sum * 100) / 10));
  EXPECT_TRUE(SameBits(scene.Along(set.get(), 1), (sum * 100) / 10));
}

TEST(ScoredPoints, PointsOutsideTheSceneCount) {
  // 60 columns admit 6 to 53: points 0 .. 43 of 50 laid from column 10 on.
  const ContourHandle set = MakeSet({RowOfPoints(50)});
  std::vector<int> all;
  for (int i = 0; i < 50; ++i)
    all.push_back(i);
  const PointScene scene(all);
  CPattVerify verifier = VerifierOfAll(set.get());
  EXPECT_EQ(scene.AtPoints(verifier), 44 * 100.0 / 50);
  EXPECT_EQ(scene.Along(set.get(), 1), 44 * 100.0 / 50);
}

TEST(ScoredPoints, StepBelowOneCountsAsOne) {
  const ContourHandle set = MakeSet({RowOfPoints(10)});
  const PointScene scene({3});
  for (const int step : {0, -1, -2147483647 - 1})
    EXPECT_TRUE(SameBits(scene.Along(set.get(), step), scene.Along(set.get(), 1))) << step;
}

TEST(ScoredPoints, StepThreeTakesEveryThirdPointOfEachContour) {
  // Points 0, 3, 6, 9 of the first contour and 0, 3 of the second, with an edge under point 9: it
  // earns 1, point 6 0.9; the others are six and more away.
  const ContourHandle set = MakeSet({RowOfPoints(10), RowOfPoints(5)});
  EXPECT_EQ(PointScene({9}).Along(set.get(), 3), ((0.9 + 1) * 100) / 6);
  EXPECT_EQ(PointScene({0}).Along(set.get(), 100), 100.0);  // the first of each
  EXPECT_EQ(PointScene({0}).Along(set.get(), 2147483647), 100.0);
}

TEST(ScoredPoints, EmptyContoursAddNothing) {
  const ContourHandle set = MakeSet({RowOfPoints(0), RowOfPoints(2), RowOfPoints(0)});
  EXPECT_EQ(PointScene({0, 1}).Along(set.get(), 1), 100.0);
}

TEST(ScoredPoints, ContoursAreReadThroughTheirRecords) {
  const ContourHandle set = MakeSet({RowOfPoints(3), RowOfPoints(9)});
  ctd_sort(set.get(), 1);
  // Step 4: points 0, 4, 8 of the longer contour, then 0 of the shorter. From an edge under point 8
  // they lie 8, 4, 0 and 8 away.
  EXPECT_EQ(PointScene({8}).Along(set.get(), 4), ((0.86 + 1) * 100) / 4);
}

TEST(ScoredPoints, NoPointsGiveNotANumber) {
  const PointScene scene({0});
  CPattVerify fresh;
  EXPECT_TRUE(std::isnan(scene.AtPoints(fresh)));
  CPattVerify of_nothing = VerifierOfAll(MakeEmptySet().get());
  EXPECT_TRUE(std::isnan(scene.AtPoints(of_nothing)));
  EXPECT_TRUE(std::isnan(scene.Along(MakeEmptySet().get(), 1)));
  EXPECT_TRUE(std::isnan(scene.Along(MakeSet({}).get(), 1)));
  EXPECT_TRUE(std::isnan(scene.Along(MakeSet({RowOfPoints(0), RowOfPoints(0)}).get(), 1)));
}

TEST(ScoredPoints, SceneWithoutARecordHasNoEdges) {
  const ContourHandle set = MakeSet({RowOfPoints(10)});
  CPattVerify verifier = VerifierOfAll(set.get());
  EXPECT_EQ(verifier.ScoreAtVerifyPoints(nullptr, 20, 20, 0, 1, 0, 0), 0.0);
  EXPECT_EQ(verifier.ScoreAlongContours(set.get(), nullptr, 20, 20, 0, 1, 0, 0, 1), 0.0);
  CPattVerify fresh;
  EXPECT_TRUE(std::isnan(fresh.ScoreAtVerifyPoints(nullptr, 20, 20, 0, 1, 0, 0)));
}

TEST(ScoredPoints, RecordThatWasNeverSizedHasNoEdges) {
  const CEdgeImgComplement unsized;
  const ContourHandle set = MakeSet({RowOfPoints(10)});
  CPattVerify verifier = VerifierOfAll(set.get());
  EXPECT_EQ(verifier.ScoreAtVerifyPoints(&unsized, 20, 20, 0, 1, 0, 0), 0.0);
  EXPECT_EQ(verifier.ScoreAlongContours(set.get(), &unsized, 20, 20, 0, 1, 0, 0, 1), 0.0);
}

TEST(ScoredPoints, ScoringChangesNothing) {
  const ContourHandle set = MakeSet({RowOfPoints(10)});
  const PointScene scene({3});
  CPattVerify verifier = VerifierOfAll(set.get());
  const double first = scene.AtPoints(verifier);
  EXPECT_EQ(verifier.pointCount, 10);
  EXPECT_EQ(verifier.probeCount, 0);
  EXPECT_TRUE(verifier.matchedPositions.empty());
  EXPECT_TRUE(SameBits(scene.AtPoints(verifier), first));
}

}  // namespace
}  // namespace orvandel::test
