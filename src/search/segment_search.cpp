#include "search/segment_search.h"

#include <vector>

#include "platform/tick_counter.h"
#include "search/coarse_search.h"
#include "search/refinement.h"
#include "verify/pose_score.h"
#include "verify/pose_scorer.h"

namespace orvandel {
namespace {

constexpr int kEveryPoint = 1;

/// The pose of a pattern among segments, at least one on either side.
void DeterminePose(const SegmentModelView& model, const std::vector<CLineSegment>& scene_segments,
                   const CEdgeImgComplement* edges, const SegmentSearchOptions& options,
                   const Deadline& deadline, SegmentMatch& match) {
  PoseScorer score_of(model.points, model.reference, edges, model.match);
  const CoarseSearchResult coarse = FindBestHypothesis(model.segments, model.reference,
                                                       scene_segments, score_of, options, deadline);
  const Hypothesis& best = coarse.best;
  match.scene_from_pattern = RefinePose(best, model.segments[best.pattern_segment], model.reference,
                                        scene_segments[best.scene_segment], score_of);
  match.score = ScoreAlongContours(model.contours, kEveryPoint, model.reference,
                                   match.scene_from_pattern, edges, model.match);
  match.coarse_score = best.score;
  match.ran_out_of_time = coarse.ran_out_of_time;
  match.num_poses = coarse.num_poses;
  match.num_probes = score_of.NumProbes();
  match.num_map_looks = score_of.NumMapLooks();
}

}  // namespace

SegmentMatch FindBySegments(const SegmentModelView& model, const SceneEdges& scene,
                            const SegmentSearchOptions& options, const Deadline& deadline) {
  SegmentMatch match;
  const auto ends_for = [&match](SegmentSearchOutcome outcome) {
    match.outcome = outcome;
    match.ran_out_of_time = outcome == SegmentSearchOutcome::kOutOfTime;
    return match;
  };
  match.num_contours = scene.contours.contour_count;
  if (match.num_contours == 0) return ends_for(SegmentSearchOutcome::kNoContour);
  if (deadline.HasPassed()) return ends_for(SegmentSearchOutcome::kOutOfTime);

  match.num_segments = scene.lines.Extract(&scene.contours);
  if (deadline.HasPassed()) return ends_for(SegmentSearchOutcome::kOutOfTime);
  if (model.segments.empty() || match.num_segments == 0)
    return ends_for(SegmentSearchOutcome::kNoSegment);

  DeterminePose(model, scene.lines.segments, scene.contours.edgeIm, options, deadline, match);
  match.outcome = SegmentSearchOutcome::kPoseDetermined;
  return match;
}

SegmentMatch FindBySegments(const SegmentModelView& model, tImage* image,
                            const CrawlOptions& crawl_options, const SceneEdges& scene,
                            const SegmentSearchOptions& options) {
  const Deadline deadline(ProcessTickCounter(), options.timeout_us);
  PrepareContours(&scene.contours, image, crawl_options);
  return FindBySegments(model, scene, options, deadline);
}

}  // namespace orvandel
