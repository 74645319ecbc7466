// What the search allocates while it tries poses: nothing.

#include <vector>

#include <gtest/gtest.h>

#include "lines/line_extraction.h"
#include "search/coarse_search.h"
#include "search/refinement.h"
#include "search/segment_model.h"
#include "search/segment_search.h"
#include "tests/search/counted_allocations.h"
#include "tests/search/small_scenes.h"
#include "verify/pose_scorer.h"

namespace orvandel::test {
namespace {

TEST(SearchAllocation, TryingAndRefiningPosesAllocatesNothing) {
  UniformRandom random(1);
  ImageEdges pattern;
  ImageEdges scene;
  ExtractEdges(RowsOf(*ImageOf(SmallPart())), {}, pattern);
  ExtractEdges(RowsOf(*RandomScene(random, SmallPart())), {}, scene);
  const SegmentModel model = LearnSegmentModel(pattern.contours.View()).model;
  const std::vector<LineSegment> scene_segments = ExtractSegments(scene.contours.View(), {});
  ASSERT_GT(model.segments.size() * scene_segments.size(), 20u);
  PoseScorer score_of(model.points.View(), model.reference, &scene.edges, model.match);
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
