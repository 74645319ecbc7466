#include <cstdint>

#include <gtest/gtest.h>

#include "orvandel/classic/edge_record.h"
#include "tests/reference/scoring.h"
#include "tests/support/contour_sets.h"

// What the benchmarks call a probe.
namespace orvandel::test {
namespace {

constexpr ReferencePose kShifted{50, 50, 0, 1, 50, 50};

/// A verifier of one point with direction 0, and an edge record of 100 x 100 pixels.
class ProbeCounting : public testing::Test {
 protected:
  double Score(double x, double y) {
    const ContourHandle set = MakeSet({{{{x, y, 0}}}});
    CPattVerify verifier;
    verifier.ChooseVerifyPoints(set.get(), 1, 10);
    return ReferenceScoreAtVerifyPoints(verifier, edges_, kShifted, &num_probes_);
  }
  void SetUp() override { ASSERT_EQ(edges_.SetSize(100, 100), 0); }

  CEdgeImgComplement edges_;
  std::int64_t num_probes_ = 0;
};

TEST_F(ProbeCounting, PointThatFindsNothingPaysForAllDistances) {
  EXPECT_EQ(Score(50.5, 50.5), 0);
  EXPECT_EQ(num_probes_, 1 + 5 * 4);  // its own pixel, and four at each of five distances
}

TEST_F(ProbeCounting, MatchInItsOwnPixelCostsOneProbe) {
  edges_.Store(50.5, 50.5, 0);
  EXPECT_EQ(Score(50.5, 50.5), 100);
  EXPECT_EQ(num_probes_, 1);
}

TEST_F(ProbeCounting, MatchOnTheNormalEndsTheProbes) {
  edges_.Store(48.5, 50.5, 0);  // direction 0 points along x; the first probe ahead is to the left
  EXPECT_DOUBLE_EQ(Score(50.5, 50.5), 94);
  EXPECT_EQ(num_probes_, 1 + 4 + 1);
}

TEST_F(ProbeCounting, PointTooNearTheBorderCostsNothing) {
  EXPECT_EQ(Score(5.5, 50.5), 0);
  EXPECT_EQ(num_probes_, 0);
}

TEST_F(ProbeCounting, CountsAddUp) {
  Score(50.5, 50.5);
  Score(60.5, 50.5);
  EXPECT_EQ(num_probes_, 42);
}

}  // namespace
}  // namespace orvandel::test
