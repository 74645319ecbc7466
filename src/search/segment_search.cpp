#include "search/segment_search.h"

#include <span>
#include <utility>

#include "contours/conditioning.h"
#include "lines/line_extraction.h"
#include "platform/tick_counter.h"
#include "search/coarse_search.h"
#include "search/refinement.h"
#include "verify/pose_score.h"
#include "verify/pose_scorer.h"

namespace orvandel {
namespace {

constexpr int kEveryPoint = 1;

/// The pose of a pattern among segments, at least one on either side.
void DeterminePose(const SegmentModelView& model, std::span<const LineSegment> scene_segments,
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
  using enum SegmentSearchOutcome;
  SegmentMatch match;
  const auto end_with = [&match](SegmentSearchOutcome outcome) {
    match.outcome = outcome;
    match.ran_out_of_time = match.ran_out_of_time || outcome == kOutOfTime;
    return std::move(match);
  };
  match.num_contours = static_cast<int>(scene.contours.NumContours());
  if (match.num_contours == 0) return end_with(kNoContour);
  if (deadline.HasPassed()) return end_with(kOutOfTime);

  match.scene_segments = ExtractSegments(scene.contours, model.lines);
  if (deadline.HasPassed()) return end_with(kOutOfTime);
  if (model.segments.empty() || match.scene_segments.empty()) return end_with(kNoSegment);

  DeterminePose(model, match.scene_segments, scene.edges, options, deadline, match);
  return end_with(kPoseDetermined);
}

void ExtractEdges(const GreyRows& image, const ContourOptions& options, ImageEdges& edges) {
  if (image.width >= kCrawledSizeLimit || image.height >= kCrawledSizeLimit) {
    edges.contours = {};
    return;
  }
  edges.contours = ConditionedContours(image, options.crawl, options.resample, edges.edges);
}

SegmentMatch FindInImage(const SegmentModelView& model, const GreyRows& image,
                         const ContourOptions& contour_options, const SegmentSearchOptions& options,
                         ImageEdges& edges) {
  const Deadline deadline(ProcessTickCounter(), options.timeout_us);
  ExtractEdges(image, contour_options, edges);
  return FindBySegments(model, edges.View(), options, deadline);
}

}  // namespace orvandel
