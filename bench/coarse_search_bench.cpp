// The coarse search by itself: how long it takes, and how many probes it pays.

#include <cstdint>
#include <vector>

#include "bench/library_coarse_search.h"
#include "bench/passes.h"
#include "bench/stages.h"
#include "bench/stopwatch.h"
#include "bench/working_copy.h"
#include "lines/classic_segment.h"
#include "search/coarse_search.h"
#include "search/deadline.h"
#include "tests/reference/pattern_search.h"
#include "tests/reference/pose_scorer.h"

namespace orvandel::bench {
namespace {

/// The reference form on one scene after another. What comes before it is outside the clock.
class ReferenceCoarseSearch {
 public:
  double operator()(const NamedImage& pattern, const NamedImage& scene) {
    Train(pattern);
    Prepare(scene);
    return SecondsOf([&] { Search(nullptr); });
  }

  std::int64_t NumProbes(const NamedImage& pattern, const NamedImage& scene) {
    Train(pattern);
    Prepare(scene);
    std::int64_t num_probes = 0;
    Search(&num_probes);
    return num_probes;
  }

 private:
  void Train(const NamedImage& pattern) {
    if (trained_on_ == &pattern) return;
    trained_on_ = &pattern;
    test::ReferenceTrain(trained_, image_.Restored(*pattern.image), {}, test::kReferenceStages);
    pattern_segments_ = SegmentsOf(trained_.segments);
  }

  void Prepare(const NamedImage& scene) {
    const test::Stages& stages = test::kReferenceStages;
    test::PrepareContours(stages, scene_.get(), image_.Restored(*scene.image), {});
    segments_ = SegmentsOf(stages.extract_segments(scene_.get()));
  }

  void Search(std::int64_t* num_probes) const {
    const Point reference = {trained_.ref_x, trained_.ref_y};
    const SegmentSearchOptions options;
    const Deadline deadline(ProcessTickCounter(), options.timeout_us);
    test::ReferencePoseScorer score_of{trained_.verifier, *ctd_edgeIm(scene_.get()), reference,
                                       num_probes};
    FindBestHypothesis(pattern_segments_, reference, segments_, score_of, options, deadline);
  }

  test::ReferencePattern trained_;
  std::vector<LineSegment> pattern_segments_;
  ContourHandle scene_{ctd_create()};
  std::vector<LineSegment> segments_;
  const NamedImage* trained_on_ = nullptr;
  WorkingCopy image_;
};

void CompareCoarseCounts(const Workload& workload, RatioTable& table) {
  LibraryCoarseSearch library_search;
  ReferenceCoarseSearch reference_search;
  std::vector<double> probes;
  std::vector<double> probes_and_looks;
  std::vector<double> reference_probes;
  for (const SearchCase& search : workload.searches) {
    const CoarseRun run = library_search(*search.pattern, *search.scene);
    probes.push_back(run.probes);
    probes_and_looks.push_back(run.probes + run.map_looks);
    reference_probes.push_back(
        static_cast<double>(reference_search.NumProbes(*search.pattern, *search.scene)));
  }
  table.AddCounts("coarse search, probes", "reference form", "probes", probes, reference_probes);
  table.AddCounts("coarse search, probes and looks at the map", "reference form", "probes",
                  probes_and_looks, reference_probes);
}

void CompareCoarseTimes(const Workload& workload, RatioTable& table) {
  LibraryCoarseSearch library_search;
  ReferenceCoarseSearch reference_search;
  std::vector<RatioTable::Sample> samples;
  for (const SearchCase& search : workload.searches) {
    const auto ours = [&] { return library_search(*search.pattern, *search.scene).seconds; };
    const auto theirs = [&] { return reference_search(*search.pattern, *search.scene); };
    samples.push_back({TimeInTurn(ours, theirs)});
  }
  table.AddTimes("coarse search", "reference form", "ms", samples);
}

}  // namespace

void RegisterCoarseSearch(const Workload& workload) {
  RegisterSearchPasses<ReferenceCoarseSearch>("CoarseSearch/reference", workload.searches);
}

void CompareCoarseSearch(const Workload& workload, RatioTable& table) {
  CompareCoarseCounts(workload, table);
  CompareCoarseTimes(workload, table);
}

}  // namespace orvandel::bench
