// What the search allocates while it tries poses: nothing.

#include <gtest/gtest.h>

#include "orvandel/classic/line_extracter.h"
#include "search/coarse_search.h"
#include "search/contour_preparation.h"
#include "search/refinement.h"
#include "search/segment_model.h"
#include "tests/search/counted_allocations.h"
#include "tests/search/small_scenes.h"
#include "tests/support/contour_sets.h"
#include "verify/pose_scorer.h"

namespace orvandel::test {
namespace {

TEST(SearchAllocation, TryingAndRefiningPosesAllocatesNothing) {
  UniformRandom random(1);
  const ContourHandle pattern = MakeEmptySet();
  const ContourHandle scene = MakeEmptySet();
  PrepareContours(pattern.get(), PictureOf(SmallPart()).get(), {});
  PrepareContours(scene.get(), RandomScene(random, SmallPart()).get(), {});
  const SegmentModel model = LearnSegmentModel(Fields(pattern)).model;
  CLineExtracter scene_lines;
  scene_lines.Extract(scene.get());
  const auto& scene_segments = scene_lines.segments;
  ASSERT_GT(model.segments.size() * scene_segments.size(), 20u);
  PoseScorer score_of(model.points.View(), model.reference, Fields(scene).edgeIm, model.match);
  const Deadline deadline(ProcessTickCounter(), 1000000);
  SegmentSearchOptions options;
  options.accept_score = 101;

  const long before = NumAllocations();
  const Hypothesis best = FindBestHypothesis(model.segments, model.reference, scene_segments,
                                             score_of, options, deadline)
                              .best;
  RefinePose(best, model.segments[best.pattern_segment], model.reference,
             scene_segments[best.scene_segment], score_of);
  EXPECT_EQ(NumAllocations() - before, 0);
  EXPECT_GT(best.score, 0.0);
}

}  // namespace
}  // namespace orvandel::test
