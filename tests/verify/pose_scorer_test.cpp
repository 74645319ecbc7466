// The search's scorer against the published one: the same bits wherever a score matters.

#include "verify/pose_scorer.h"

#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/support/contour_sets.h"
#include "tests/support/numbers.h"
#include "tests/support/same_bits.h"
#include "tests/support/simd_levels.h"
#include "tests/support/uniform_random.h"
#include "verify/verifier_view.h"

namespace orvandel::test {
namespace {

using PoseScorerTest = AtEverySimdLevel;
ORVANDEL_AT_EVERY_SIMD_LEVEL(PoseScorerTest);

constexpr ScoreThreshold kNoThreshold = {-kInfinity, -kInfinity};

/// A pattern of a few random contours, all of whose points are verification points, and a scene of
/// random edges and of the pattern's under a pose, so that poses near it score well.
struct Setting {
  explicit Setting(std::uint32_t seed) : random(seed) {
    std::vector<TestContour> contours(static_cast<std::size_t>(random.Integer(1, 4)));
    for (TestContour& contour : contours) {
      for (int i = random.Integer(1, 60); i > 0; --i) {
        contour.points.push_back(
            {random.Real(0, 60), random.Real(0, 60), random.Real(-kPi, 2 * kPi), 0});
      }
    }
    const ContourHandle set = MakeSet(contours);
    verifier.ChooseVerifyPoints(set.get(), 1.0, 1000);
    edges.SetSize(random.Integer(60, 110), random.Integer(60, 110));
    true_pose = {edges.width / 2.0, edges.height / 2.0, random.Real(-7, 7), random.Real(0.5, 1.2)};
    DrawPattern();
    for (int i = random.Integer(0, 300); i > 0; --i) {
      edges.Store(random.Real(0, edges.width), random.Real(0, edges.height),
                  random.Real(-kPi, kPi));
    }
  }

  void DrawPattern() {
    for (int i = 0; i < verifier.pointCount; ++i) {
      if (random.OneIn(4)) continue;
      const double dx = (verifier.pointX[i] - reference.x) * true_pose.scale;
      const double dy = (verifier.pointY[i] - reference.y) * true_pose.scale;
      const double c = std::cos(true_pose.angle);
      const double s = std::sin(true_pose.angle);
      edges.Store(true_pose.x + dx * c - dy * s + random.Real(-0.8, 0.8),
                  true_pose.y + dx * s + dy * c + random.Real(-0.8, 0.8),
                  std::remainder(verifier.pointDir[i] - true_pose.angle, 2 * kPi));
    }
  }

  Similarity RandomPose() {
    if (random.OneIn(10)) return true_pose;
    if (random.OneIn(2)) {
      return {true_pose.x + random.Real(-3, 3), true_pose.y + random.Real(-3, 3), true_pose.angle,
              true_pose.scale * random.Real(0.9, 1.1)};
    }
    return {random.Real(-20, edges.width + 20), random.Real(-20, edges.height + 20),
            random.OneIn(3) ? true_pose.angle : random.Real(-7, 7), random.Real(0, 2)};
  }

  double Published(const Similarity& pose) {
    return verifier.ScoreAtVerifyPoints(&edges, pose.x, pose.y, pose.angle, pose.scale, reference.x,
                                        reference.y);
  }

  PoseScorer Scorer() const {
    return {PointsOf(verifier), reference, &edges, MatchOptionsOf(verifier)};
  }

  UniformRandom random;
  CPattVerify verifier;
  CEdgeImgComplement edges;
  Point reference = {30, 30};
  Similarity true_pose;
};

TEST_P(PoseScorerTest, WithoutAThresholdEveryScoreIsExact) {
  double best = 0;
  for (std::uint32_t seed = 1; seed <= 80; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    Setting s(seed);
    PoseScorer score_of = s.Scorer();
    for (int i = 0; i < 60; ++i) {
      const Similarity pose = s.RandomPose();
      const double published = s.Published(pose);
      best = std::max(best, published);
      ASSERT_TRUE(SameBits(score_of(pose, kNoThreshold), published)) << i;
    }
  }
  EXPECT_GT(best, 60.0);
}

TEST_P(PoseScorerTest, AScoreThatClearsTheThresholdIsExactAndOthersAreKnownToMissIt) {
  int num_missed = 0;
  int num_cleared = 0;
  for (std::uint32_t seed = 101; seed <= 180; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    Setting s(seed);
    PoseScorer score_of = s.Scorer();
    for (int i = 0; i < 60; ++i) {
      const Similarity pose = s.RandomPose();
      const double published = s.Published(pose);
      // The thresholds include the score itself and its neighbours: a best score is not beaten by an equal
      // one, an accept score is reached by it.
      const double near[] = {published, std::nextafter(published, -1.0),
                             std::nextafter(published, 101.0), s.random.Real(0, 100)};
      const ScoreThreshold threshold = {
          near[s.random.Integer(0, 3)],
          s.random.OneIn(2) ? near[s.random.Integer(0, 3)] : kInfinity};
      const double score = score_of(pose, threshold);
      if (published > threshold.best || published >= threshold.accept) {
        ++num_cleared;
        ASSERT_TRUE(SameBits(score, published)) << i;
      } else if (score == PoseScorer::kMissed) {
        ++num_missed;
      } else {
        ASSERT_TRUE(SameBits(score, published)) << i;
      }
    }
  }
  EXPECT_GT(num_missed, 300);  // neither case is rare
  EXPECT_GT(num_cleared, 300);
}

TEST_P(PoseScorerTest, FollowsTheOptionsOfItsVerifier) {
  for (std::uint32_t seed = 201; seed <= 240; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    Setting s(seed);
    s.verifier.searchRadius = s.random.Integer(0, 9);
    s.verifier.ignorePolarity = s.random.Integer(0, 1);
    s.verifier.angleTolerance = s.random.Real(0, 2);
    PoseScorer score_of = s.Scorer();
    for (int i = 0; i < 40; ++i) {
      const Similarity pose = s.RandomPose();
      ASSERT_TRUE(SameBits(score_of(pose, kNoThreshold), s.Published(pose))) << i;
    }
  }
}

TEST_P(PoseScorerTest, WildPosesAndDirectionsAreScoredAsPublished) {
  const double wild[] = {std::nan(""), kInfinity, -kInfinity, 1e300, -1e300, 3e9,
                         1e6,          -1e6,      2e5,        -0.0,  1e-300, 40.0};
  Setting s(301);
  const auto pick = [&] {
    return s.random.OneIn(3) ? wild[s.random.Integer(0, 11)] : s.random.Real(-5, 90);
  };
  for (int trial = 0; trial < 200; ++trial) {
    if (trial == 100)
      s.verifier.pointDir[0] = 3e5;  // from here on a direction that cannot be quantised
    PoseScorer score_of = s.Scorer();
    for (int i = 0; i < 10; ++i) {
      const Similarity pose = {pick(), pick(), pick(), pick()};
      ASSERT_TRUE(SameBits(score_of(pose, kNoThreshold), s.Published(pose))) << trial;
    }
  }
}

TEST_P(PoseScorerTest, WithoutPointsOrSceneThereIsNothingToScore) {
  Setting s(302);
  CPattVerify untrained;
  PoseScorer no_points(PointsOf(untrained), {0, 0}, &s.edges, MatchOptions());
  EXPECT_TRUE(std::isnan(no_points({1, 2, 0, 1}, {0, 80})));
  PoseScorer no_scene(PointsOf(s.verifier), s.reference, nullptr, MatchOptions());
  EXPECT_EQ(no_scene(s.true_pose, kNoThreshold), 0.0);
}

TEST_P(PoseScorerTest, WrongPosesCostFarLessThanAProbeEach) {
  Setting s(303);
  PoseScorer score_of = s.Scorer();
  const std::int64_t before = score_of.NumProbes();
  for (int i = 0; i < 100; ++i) {
    const Similarity wrong = {s.random.Real(10, 50), s.random.Real(10, 50), s.random.Real(-7, 7),
                              1.0};
    score_of(wrong, {70, 80});
  }
  EXPECT_LT(score_of.NumProbes() - before, 100 * s.verifier.pointCount);
}

}  // namespace
}  // namespace orvandel::test
