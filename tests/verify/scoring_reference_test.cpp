// Both scorers and their references agree bit for bit, over random scenes, patterns and poses.

#include <cmath>
#include <cstdint>
#include <string>
#include <vector>

#include <gtest/gtest.h>

#include "tests/reference/scoring.h"
#include "tests/support/numbers.h"
#include "tests/support/same_bits.h"
#include "tests/support/uniform_random.h"
#include "tests/verify/scene_edges.h"

namespace orvandel::test {
namespace {

struct Pattern {
  std::vector<TestContour> contours;
  double cx;
  double cy;
};

Pattern RandomPattern(UniformRandom& random, int num_contours, int most_points) {
  Pattern pattern{{}, random.Real(0, 40), random.Real(0, 40)};
  for (int c = 0; c < num_contours; ++c) {
    TestContour contour;
    for (int i = random.Integer(0, most_points); i > 0; --i) {
      contour.points.push_back(
          {random.Real(0, 40), random.Real(0, 40), random.Real(-2 * kPi, 3 * kPi), 0});
    }
    pattern.contours.push_back(contour);
  }
  return pattern;
}

ReferencePose RandomPose(UniformRandom& random, const Pattern& pattern, const SceneEdges& scene) {
  ReferencePose pose{};
  pose.tx = random.Real(-10, (*scene).width + 10);
  pose.ty = random.Real(-10, (*scene).height + 10);
  pose.angle = random.OneIn(4) ? 0 : random.Real(-3 * kPi, 3 * kPi);
  pose.scale = random.OneIn(10) ? 0 : random.Real(0.05, 2.5);
  pose.cx = pattern.cx;
  pose.cy = pattern.cy;
  return pose;
}

/// A pose that lays most of the pattern inside the scene.
ReferencePose CentralPose(UniformRandom& random, const Pattern& pattern, const SceneEdges& scene) {
  ReferencePose pose = RandomPose(random, pattern, scene);
  pose.tx = (*scene).width / 2.0 + random.Real(-3, 3);
  pose.ty = (*scene).height / 2.0 + random.Real(-3, 3);
  pose.scale = random.Real(0.2, 1.1);
  return pose;
}

/// Puts random edges into the scene, and edges where a pose expects the pattern, near and off.
void FillScene(UniformRandom& random, const Pattern& pattern, const ReferencePose& pose,
               int num_random, SceneEdges& scene) {
  for (int i = 0; i < num_random; ++i) {
    const int column = random.Integer(0, (*scene).width - 1);
    const int row = random.Integer(0, (*scene).height - 1);
    scene.Put(column, row, random.Real(-kPi, kPi));
  }
  for (const TestContour& contour : pattern.contours) {
    for (const TestPoint& p : contour.points) {
      const double dx = (p.x - pose.cx) * pose.scale;
      const double dy = (p.y - pose.cy) * pose.scale;
      const double x = pose.tx + dx * std::cos(pose.angle) - dy * std::sin(pose.angle);
      const double y = pose.ty + dx * std::sin(pose.angle) + dy * std::cos(pose.angle);
      const double g = std::remainder(p.g - pose.angle + random.Real(-0.6, 0.6), 2 * kPi);
      scene.Put(static_cast<int>(x) + random.Integer(-6, 6),
                static_cast<int>(y) + random.Integer(-6, 6), g);
    }
  }
}

/// Compares both scorers with their references at one pose; returns the score at the points.
double CompareScores(CPattVerify& verifier, void* set, const SceneEdges& scene,
                     const ReferencePose& p) {
  const double at_points =
      verifier.ScoreAtVerifyPoints(scene.get(), p.tx, p.ty, p.angle, p.scale, p.cx, p.cy);
  EXPECT_TRUE(SameBits(at_points, ReferenceScoreAtVerifyPoints(verifier, *scene, p)));
  for (const int step : {0, 1, 2, 3, 7, 50}) {
    EXPECT_TRUE(SameBits(verifier.ScoreAlongContours(set, scene.get(), p.tx, p.ty, p.angle, p.scale,
                                                     p.cx, p.cy, step),
                         ReferenceScoreAlongContours(verifier, set, *scene, p, step)))
        << "step " << step;
  }
  return at_points;
}

TEST(ScoringReference, AgreesOnRandomScenesPatternsAndPoses) {
  double sum = 0;
  for (std::uint32_t seed = 1; seed <= 150; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    UniformRandom random(seed);
    const Pattern pattern = RandomPattern(random, random.Integer(1, 5), 60);
    const ContourHandle set = MakeSet(pattern.contours);
    CPattVerify verifier;
    verifier.ChooseVerifyPoints(set.get(), random.Real(0, 1.2), random.Integer(1, 60));
    const int least_size = random.OneIn(5) ? 1 : 50;
    SceneEdges scene(random.Integer(least_size, 90), random.Integer(least_size, 90));
    const ReferencePose true_pose = CentralPose(random, pattern, scene);
    FillScene(random, pattern, true_pose, random.OneIn(3) ? 4000 : random.Integer(0, 300), scene);
    const double score = CompareScores(verifier, set.get(), scene, true_pose);
    if (!std::isnan(score)) sum += score;
    for (int i = 0; i < 30; ++i)
      CompareScores(verifier, set.get(), scene, RandomPose(random, pattern, scene));
  }
  EXPECT_GT(sum / 150, 20.0);  // the scenes are not just empty
}

TEST(ScoringReference, AgreesAtEveryRadiusAndPolarity) {
  for (std::uint32_t seed = 501; seed <= 560; ++seed) {
    SCOPED_TRACE("seed " + std::to_string(seed));
    UniformRandom random(seed);
    const Pattern pattern = RandomPattern(random, 3, 40);
    const ContourHandle set = MakeSet(pattern.contours);
    CPattVerify verifier = VerifierOfAll(set.get());
    verifier.searchRadius = random.Integer(0, 9);
    verifier.ignorePolarity = random.Integer(-1, 1);
    verifier.angleTolerance = random.Real(0, 2);
    SceneEdges scene(70, 60);
    const ReferencePose true_pose = CentralPose(random, pattern, scene);
    FillScene(random, pattern, true_pose, 500, scene);
    CompareScores(verifier, set.get(), scene, true_pose);
    for (int i = 0; i < 20; ++i)
      CompareScores(verifier, set.get(), scene, RandomPose(random, pattern, scene));
  }
}

TEST(ScoringReference, AgreesAtEveryNumberOfPoints) {
  // Numbers of points below, at and beyond whole vectors of any width.
  UniformRandom random(11);
  for (int num_points = 0; num_points <= 70; ++num_points) {
    SCOPED_TRACE("seed 11, points " + std::to_string(num_points));
    Pattern pattern{{TestContour()}, 20, 20};
    for (int i = 0; i < num_points; ++i) {
      pattern.contours[0].points.push_back(
          {random.Real(0, 40), random.Real(0, 40), random.Real(-kPi, kPi), 0});
    }
    const ContourHandle set = MakeSet(pattern.contours);
    CPattVerify verifier = VerifierOfAll(set.get());
    ASSERT_EQ(verifier.pointCount, num_points);
    SceneEdges scene(64, 64);
    const ReferencePose pose{32, 32, 0.3, 1, 20, 20};
    FillScene(random, pattern, pose, 300, scene);
    CompareScores(verifier, set.get(), scene, pose);
  }
}

TEST(ScoringReference, AgreesOnWildNumbers) {
  const double wild[] = {std::nan(""), kInfinity, -kInfinity,   1e300,         -1e300,
                         3e9,          -3e9,      2147483648.0, -2147483649.0, 1e6,
                         -1e6,         1e-300,    0.0,          -0.0,          20.0};
  UniformRandom random(12);
  SceneEdges scene(50, 50);
  for (int i = 0; i < 1500; ++i)
    scene.Put(random.Integer(0, 49), random.Integer(0, 49), random.Real(-kPi, kPi));
  const auto pick = [&] {
    return random.OneIn(3) ? wild[random.Integer(0, 14)] : random.Real(-4, 40);
  };
  for (int trial = 0; trial < 600; ++trial) {
    SCOPED_TRACE("seed 12, trial " + std::to_string(trial));
    TestContour contour;
    for (int i = 0; i < 6; ++i)
      contour.points.push_back({pick(), pick(), pick(), 0});
    const ContourHandle set = MakeSet({contour});
    CPattVerify verifier = VerifierOfAll(set.get());
    CompareScores(verifier, set.get(), scene, {pick(), pick(), pick(), pick(), pick(), pick()});
  }
}

}  // namespace
}  // namespace orvandel::test
