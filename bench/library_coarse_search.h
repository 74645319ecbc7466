#pragma once

#include "bench/stopwatch.h"
#include "bench/working_copy.h"
#include "bench/workload.h"
#include "lines/line_extraction.h"
#include "search/coarse_search.h"
#include "search/deadline.h"
#include "search/segment_search.h"
#include "verify/pose_scorer.h"

namespace orvandel::bench {

struct CoarseRun {
  double seconds = 0;
  double probes = 0;     ///< looks at pixels of the scene's edge record
  double map_looks = 0;  ///< looks at the spread orientation map
};

/// The library's coarse search by itself, behind its public interface: what comes before it is outside
/// the clock, the making of the spread orientation map inside.
class LibraryCoarseSearch {
 public:
  CoarseRun operator()(const NamedImage& pattern, const NamedImage& scene) {
    Train(pattern);
    ExtractEdges(RowsOf(*image_.Restored(*scene.image)), {}, scene_);
    const auto segments = ExtractSegments(scene_.contours.View(), model_.lines);

    const SegmentModelView model = model_.View();
    const SegmentSearchOptions options;
    CoarseRun run;
    run.seconds = SecondsOf([&] {
      const Deadline deadline(ProcessTickCounter(), options.timeout_us);
      PoseScorer score_of(model.points, model.reference, &scene_.edges, model.match);
      FindBestHypothesis(model.segments, model.reference, segments, score_of, options, deadline);
      run.probes = static_cast<double>(score_of.NumProbes());
      run.map_looks = static_cast<double>(score_of.NumMapLooks());
    });
    return run;
  }

 private:
  void Train(const NamedImage& pattern) {
    if (trained_on_ == &pattern) return;
    trained_on_ = &pattern;
    ExtractEdges(RowsOf(*image_.Restored(*pattern.image)), {}, pattern_);
    model_ = LearnSegmentModel(pattern_.contours.View()).model;
  }

  ImageEdges pattern_;
  ImageEdges scene_;
  SegmentModel model_;
  const NamedImage* trained_on_ = nullptr;
  WorkingCopy image_;
};

}  // namespace orvandel::bench
