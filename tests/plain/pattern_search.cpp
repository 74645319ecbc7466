#include "tests/plain/pattern_search.h"

#include "search/deadline.h"
#include "tests/plain/coarse_search.h"
#include "tests/plain/crawl.h"
#include "tests/plain/line_extraction.h"
#include "tests/plain/refinement.h"
#include "tests/plain/resampling.h"
#include "tests/plain/scoring.h"

namespace orvandel::plain {
namespace {

constexpr int kNoContourInPattern = 1;
constexpr int kNoContourInScene = 2;
constexpr int kNoSegment = 4;

constexpr double kVerificationFraction = 0.06;
constexpr int kVerificationCap = 20;
constexpr std::int32_t kPatternLinesTried = 5;
constexpr int kEveryPoint = 0;

SearchResult Failed(int status) {
  SearchResult result;
  result.status = status;
  return result;
}

}  // namespace

int PrepareContours(void* contours, tImage* image, const SearchOptions& options) {
  Crawl(contours, image, options.edge_threshold, options.min_contour_size,
        options.max_contour_size);
  ctd_average(contours);
  Resample(contours);
  ctd_sort(contours, 1);
  return ctd_contour_count(contours);
}

int Train(Pattern& pattern, tImage* image, const SearchOptions& options) {
  void* contours = pattern.contours.get();
  if (PrepareContours(contours, image, options) == 0) return kNoContourInPattern;

  ctd_centroid(contours, &pattern.reference.x, &pattern.reference.y);
  pattern.segments = ExtractSegments(CLineExtracter(), contours);
  if (pattern.segments.empty()) return kNoSegment;
  pattern.verifier.ChooseVerifyPoints(contours, kVerificationFraction, kVerificationCap);
  return 0;
}

SearchResult LookForIt(const Pattern& pattern, void* scene_contours, tImage* image,
                       const SearchOptions& options, SearchCounts* counts) {
  const Deadline deadline(ProcessTickCounter(), options.timeout_us);
  if (PrepareContours(scene_contours, image, options) == 0) return Failed(kNoContourInScene);
  if (deadline.HasPassed()) return {};

  const std::vector<CLineSegment> scene = ExtractSegments(CLineExtracter(), scene_contours);
  if (deadline.HasPassed()) return {};
  if (scene.empty()) return Failed(kNoSegment);

  const CEdgeImgComplement* edges = ctd_edgeIm(scene_contours);
  const auto scorer = [&](ProbeCount* count) {
    return PoseScorer{pattern.verifier, edges, pattern.reference, count};
  };
  const CoarseOptions coarse = {options.min_scale, options.max_scale, options.accept_score,
                                kPatternLinesTried};
  const Hypothesis best = FindBestHypothesis(
      pattern.segments, scene, scorer(counts ? &counts->coarse : nullptr), coarse, deadline);
  const Pose pose =
      RefinePose(best, pattern.segments[best.pattern_segment], scene[best.scene_segment],
                 scorer(counts ? &counts->refinement : nullptr));
  const double score =
      ScoreAlongContours(pattern.verifier, pattern.contours.get(), edges, pose, pattern.reference,
                         kEveryPoint, counts ? &counts->final_score : nullptr);
  return {0, pose, score};
}

}  // namespace orvandel::plain
