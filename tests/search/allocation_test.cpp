// What the search allocates while it tries poses: nothing.

#include <gtest/gtest.h>

#include "orvandel/classic/ctd.h"
#include "orvandel/classic/line_extracter.h"
#include "search/coarse_search.h"
#include "search/contour_preparation.h"
#include "search/pose_scorer.h"
#include "search/refinement.h"
#include "tests/search/counted_allocations.h"
#include "tests/search/small_scenes.h"
#include "tests/support/contour_sets.h"

namespace orvandel::test {
namespace {

/// Contours and segments of a picture.
struct Prepared {
  explicit Prepared(const ImagePtr& picture) {
    PrepareContours(contours.get(), CopyOf(picture).get(), {16, 10, 100000});
    lines.Extract(contours.get());
  }
  ContourSet contours = MakeEmptySet();
  CLineExtracter lines;
};

TEST(SearchAllocation, TryingAndRefiningPosesAllocatesNothing) {
  UniformRandom random(1);
  Prepared pattern(PictureOf(SmallPart()));
  Prepared scene(RandomScene(random, SmallPart()));
  Point reference{};
  ctd_centroid(pattern.contours.get(), &reference.x, &reference.y);
  CPattVerify verifier;
  verifier.ChooseVerifyPoints(pattern.contours.get(), 0.06, 20);

  const auto& pattern_segments = pattern.lines.GetSegments();
  const auto& scene_segments = scene.lines.GetSegments();
  ASSERT_GT(pattern_segments.size() * scene_segments.size(), 20u);
  PoseScorer score_of(verifier, ctd_edgeIm(scene.contours.get()), reference);
  const Deadline deadline(ProcessTickCounter(), 1000000);

  const long before = NumAllocations();
  const Hypothesis best = FindBestHypothesis(pattern_segments, scene_segments, score_of,
                                             {0.25, 4.0, 101.0, 5}, deadline);
  RefinePose(best, pattern_segments[best.pattern_segment], scene_segments[best.scene_segment],
             score_of);
  EXPECT_EQ(NumAllocations() - before, 0);
  EXPECT_GT(best.score, 0.0);
}

}  // namespace
}  // namespace orvandel::test
