#include "tests/plain/pattern_search.h"

#include "search/coarse_search.h"
#include "search/deadline.h"
#include "search/refinement.h"
#include "tests/plain/crawl.h"
#include "tests/plain/line_extraction.h"
#include "tests/plain/pose_scorer.h"
#include "tests/plain/resampling.h"
#include "tests/plain/scoring.h"

namespace orvandel::plain {
namespace {

constexpr int kEveryPoint = 0;

SegmentMatch EndedFor(SegmentSearchOutcome outcome) {
  SegmentMatch match;
  match.outcome = outcome;
  return match;
}

}  // namespace

int PrepareContours(void* contours, tImage* image, const CrawlOptions& options) {
  Crawl(contours, image, options.edge_threshold, options.min_size, options.max_size);
  ctd_average(contours);
  Resample(contours);
  ctd_sort(contours, 1);
  return ctd_contour_count(contours);
}

LearningOutcome Train(Pattern& pattern, tImage* image, const CrawlOptions& options) {
  void* contours = pattern.contours.get();
  if (plain::PrepareContours(contours, image, options) == 0) return LearningOutcome::kNoContour;

  ctd_centroid(contours, &pattern.reference.x, &pattern.reference.y);
  pattern.segments = ExtractSegments(CLineExtracter(), contours);
  if (pattern.segments.empty()) return LearningOutcome::kNoSegment;
  const VerificationPointOptions points;
  pattern.verifier.ChooseVerifyPoints(contours, points.fraction, points.max_per_contour);
  return LearningOutcome::kLearnt;
}

SegmentMatch Find(const Pattern& pattern, void* scene_contours, tImage* image,
                  const SearchOptions& options, SearchCounts* counts) {
  const Deadline deadline(ProcessTickCounter(), options.search.timeout_us);
  if (plain::PrepareContours(scene_contours, image, options.crawl) == 0)
    return EndedFor(SegmentSearchOutcome::kNoContour);
  if (deadline.HasPassed()) return EndedFor(SegmentSearchOutcome::kOutOfTime);

  const std::vector<CLineSegment> scene = ExtractSegments(CLineExtracter(), scene_contours);
  if (deadline.HasPassed()) return EndedFor(SegmentSearchOutcome::kOutOfTime);
  if (scene.empty()) return EndedFor(SegmentSearchOutcome::kNoSegment);

  const CEdgeImgComplement* edges = ctd_edgeIm(scene_contours);
  const auto scorer = [&](ProbeCount* count) {
    return PoseScorer{pattern.verifier, edges, pattern.reference, count};
  };
  PoseScorer coarse_score_of = scorer(counts ? &counts->coarse : nullptr);
  const Hypothesis best = FindBestHypothesis(pattern.segments, pattern.reference, scene,
                                             coarse_score_of, options.search, deadline)
                              .best;
  PoseScorer score_of = scorer(counts ? &counts->refinement : nullptr);
  SegmentMatch match;
  match.outcome = SegmentSearchOutcome::kPoseDetermined;
  match.scene_from_pattern = RefinePose(best, pattern.segments[best.pattern_segment],
                                        pattern.reference, scene[best.scene_segment], score_of);
  match.score =
      ScoreAlongContours(pattern.verifier, pattern.contours.get(), edges, match.scene_from_pattern,
                         pattern.reference, kEveryPoint, counts ? &counts->final_score : nullptr);
  return match;
}

}  // namespace orvandel::plain
