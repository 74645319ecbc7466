// What the refinement makes of the best hypothesis.

#include <cmath>

#include <gtest/gtest.h>

#include "orvandel/classic/qrsis.h"
#include "tests/reference/pattern_search.h"
#include "tests/search/scripted_counter.h"
#include "tests/search/search_results.h"
#include "tests/search/small_scenes.h"

namespace orvandel::test {
namespace {

constexpr double kSumOfScaleSteps = 0.19921875;  // 0.1 + 0.05 + ... + 0.00078125

struct BothResults {
  Found found;
  double coarse_scale;
};

/// Searches with scale bounds, and by the reference too, to learn the scale before the refinement.
BothResults SearchWithBounds(const ImagePtr& scene, double min_scale, double max_scale) {
  const ScriptedCounter no_hurry(FrozenTime());
  TrainedSearch search(ImageOf(SmallPart()));
  search.SetMinMaxScale(min_scale, max_scale);
  const Found found = LookFor(search, scene);

  ReferenceParameters parameters;
  parameters.min_scale = min_scale;
  parameters.max_scale = max_scale;
  ReferencePattern reference;
  EXPECT_EQ(ReferenceTrain(reference, CopyOf(ImageOf(SmallPart())).get(), parameters), 0);
  ReferenceSearch reference_search(reference, parameters);
  ExpectSameResult(found, reference_search.LookForIt(CopyOf(scene).get(), [] { return false; }));
  return {found, reference_search.coarse_scale()};
}

TEST(Refinement, ScaleMayLeaveTheUpperBound) {
  // The part is 1.25 times as large, hypotheses up to 1.18 only are tried.
  const ImagePtr scene = SceneOf(SmallPart(), {.x = 92, .y = 71, .angle_deg = 35, .scale = 1.25});
  const auto [found, coarse_scale] = SearchWithBounds(scene, 0.9, 1.18);
  EXPECT_LE(coarse_scale, 1.18);
  EXPECT_GT(found.scale, 1.18);
  EXPECT_LE(found.scale, 1.18 + kSumOfScaleSteps);
  EXPECT_NEAR(found.scale, 1.25, 0.03);
}

TEST(Refinement, ScaleMayLeaveTheLowerBound) {
  const ImagePtr scene = SceneOf(SmallPart(), {.x = 92, .y = 71, .angle_deg = 35, .scale = 0.8});
  const auto [found, coarse_scale] = SearchWithBounds(scene, 0.86, 1.2);
  EXPECT_GE(coarse_scale, 0.86);
  EXPECT_LT(found.scale, 0.86);
  EXPECT_GE(found.scale, 0.86 - kSumOfScaleSteps);
  EXPECT_NEAR(found.scale, 0.8, 0.03);
}

TEST(Refinement, KeepsTheAngleOfTheBestHypothesis) {
  // The angle is the difference of two segment directions, whatever the refinement does.
  TrainedSearch search(ImageOf(SmallPart()));
  const ImagePtr scene = SceneOf(SmallPart(), {.x = 92, .y = 71, .angle_deg = 35, .scale = 1.1});
  const Found found = LookFor(search, scene);
  CLineExtracter pattern_lines;
  CLineExtracter scene_lines;
  pattern_lines.Extract(search.GetCrawlerPatternData());
  scene_lines.Extract(search.GetCrawlerSceneData());
  bool is_a_difference = false;
  for (const CLineSegment& p : pattern_lines.segments) {
    for (const CLineSegment& s : scene_lines.segments)
      is_a_difference = is_a_difference || AreSameBits(found.angle, p.direction - s.direction);
  }
  EXPECT_TRUE(is_a_difference);
}

TEST(Refinement, FinalScoreIsThatOfAllContourPointsAtTheFoundPose) {
  TrainedSearch search(ImageOf(SmallPart()));
  const ImagePtr scene = SceneOf(SmallPart(), {.x = 92, .y = 71, .angle_deg = 35, .scale = 1.1});
  const Found found = LookFor(search, scene);
  double ref_x = 0;
  double ref_y = 0;
  search.GetPatternRef(&ref_x, &ref_y);
  const double score = CPattVerify().ScoreAlongContours(
      search.GetCrawlerPatternData(), ctd_edgeIm(search.GetCrawlerSceneData()), found.x, found.y,
      found.angle, found.scale, ref_x, ref_y, 1);
  EXPECT_TRUE(SameBits(found.score, score));
}

}  // namespace
}  // namespace orvandel::test
