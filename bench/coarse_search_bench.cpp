// The coarse search by itself: how long it takes, and how many probes it pays.

#include <vector>

#include "bench/library_coarse_search.h"
#include "bench/passes.h"
#include "bench/stages.h"
#include "bench/stopwatch.h"
#include "bench/working_copy.h"
#include "search/coarse_search.h"
#include "search/deadline.h"
#include "tests/plain/line_extraction.h"
#include "tests/plain/pattern_search.h"
#include "tests/plain/pose_scorer.h"

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

  plain::ProbeCount Count(const NamedImage& pattern, const NamedImage& scene) {
    Train(pattern);
    Prepare(scene);
    plain::ProbeCount count;
    Search(&count);
    return count;
  }

 private:
  void Train(const NamedImage& pattern) {
    if (trained_on_ != &pattern)
      plain::Train(trained_, image_.Restored(*pattern.image), options_.crawl);
    trained_on_ = &pattern;
  }

  void Prepare(const NamedImage& scene) {
    plain::PrepareContours(scene_.get(), image_.Restored(*scene.image), options_.crawl);
    segments_ = plain::ExtractSegments(CLineExtracter(), scene_.get());
  }

  void Search(plain::ProbeCount* count) const {
    const Deadline deadline(ProcessTickCounter(), options_.search.timeout_us);
    plain::PoseScorer score_of{trained_.verifier, ctd_edgeIm(scene_.get()), trained_.reference,
                               count};
    FindBestHypothesis(trained_.segments, trained_.reference, segments_, score_of, options_.search,
                       deadline);
  }

  plain::SearchOptions options_;
  plain::Pattern trained_;
  ContourHandle scene_{ctd_create()};
  std::vector<CLineSegment> segments_;
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
    const plain::ProbeCount count = reference_search.Count(*search.pattern, *search.scene);
    reference_probes.push_back(static_cast<double>(count.probes));
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
