#pragma once

#include <cstdint>
#include <vector>

#include "bench/stopwatch.h"
#include "bench/working_copy.h"
#include "bench/workload.h"
#include "orvandel/classic/ctd.h"
#include "orvandel/classic/line_extracter.h"
#include "orvandel/classic/patt_verify.h"
#include "search/coarse_search.h"
#include "search/contour_preparation.h"
#include "search/deadline.h"
#include "search/pose_scorer.h"
#include "tests/plain/pattern_search.h"

namespace orvandel::bench {

struct CoarseRun {
  double seconds = 0;
  double probes = 0;     ///< looks at pixels of the scene's edge record
  double map_looks = 0;  ///< looks at the map of what is within reach
};

/// The library's coarse search by itself, behind its public interface: what comes before it is outside
/// the clock, the making of the reach map inside.
class LibraryCoarseSearch {
 public:
  CoarseRun operator()(const Picture& pattern, const Picture& scene) {
    Train(pattern);
    void* contours = scene_.get();
    PrepareContours(contours, image_.Restored(*scene.image), CrawlOptionsOf(options_));
    scene_lines_.Extract(contours);

    constexpr std::int32_t kPatternLinesTried = 5;
    CoarseRun run;
    run.seconds = SecondsOf([&] {
      const Deadline deadline(ProcessTickCounter(), options_.timeout_us);
      PoseScorer score_of(verifier_, ctd_edgeIm(contours), reference_);
      FindBestHypothesis(
          pattern_lines_.GetSegments(), scene_lines_.GetSegments(), score_of,
          {options_.min_scale, options_.max_scale, options_.accept_score, kPatternLinesTried},
          deadline);
      run.probes = static_cast<double>(score_of.NumProbes());
      run.map_looks = static_cast<double>(score_of.NumMapLooks());
    });
    return run;
  }

 private:
  static CrawlOptions CrawlOptionsOf(const plain::SearchOptions& options) {
    return {options.edge_threshold, options.min_contour_size, options.max_contour_size};
  }

  void Train(const Picture& pattern) {
    if (trained_on_ == &pattern) return;
    trained_on_ = &pattern;
    PrepareContours(pattern_.get(), image_.Restored(*pattern.image), CrawlOptionsOf(options_));
    ctd_centroid(pattern_.get(), &reference_.x, &reference_.y);
    pattern_lines_.Extract(pattern_.get());
    constexpr double kFraction = 0.06;
    constexpr int kMostOfContour = 20;
    verifier_.ChooseVerifyPoints(pattern_.get(), kFraction, kMostOfContour);
  }

  plain::SearchOptions options_;
  plain::ContourSet pattern_{ctd_create()};
  plain::ContourSet scene_{ctd_create()};
  CLineExtracter pattern_lines_;
  CLineExtracter scene_lines_;
  CPattVerify verifier_;
  Point reference_{};
  const Picture* trained_on_ = nullptr;
  WorkingCopy image_;
};

}  // namespace orvandel::bench
