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

/// The plain form on one scene after another. What comes before it is outside the clock.
class PlainCoarseSearch {
 public:
  double operator()(const Picture& pattern, const Picture& scene) {
    Train(pattern);
    Prepare(scene);
    return SecondsOf([&] { Search(nullptr); });
  }

  plain::ProbeCount Count(const Picture& pattern, const Picture& scene) {
    Train(pattern);
    Prepare(scene);
    plain::ProbeCount count;
    Search(&count);
    return count;
  }

 private:
  void Train(const Picture& pattern) {
    if (trained_on_ != &pattern)
      plain::Train(trained_, image_.Restored(*pattern.image), options_.crawl);
    trained_on_ = &pattern;
  }

  void Prepare(const Picture& scene) {
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
  plain::ContourSet scene_{ctd_create()};
  std::vector<CLineSegment> segments_;
  const Picture* trained_on_ = nullptr;
  WorkingCopy image_;
};

void CompareCoarseCounts(const Workload& workload, RatioTable& table) {
  LibraryCoarseSearch library_search;
  PlainCoarseSearch plain_search;
  std::vector<double> probes;
  std::vector<double> probes_and_looks;
  std::vector<double> plain_probes;
  for (const SearchCase& search : workload.searches) {
    const CoarseRun run = library_search(*search.pattern, *search.scene);
    probes.push_back(run.probes);
    probes_and_looks.push_back(run.probes + run.map_looks);
    const plain::ProbeCount count = plain_search.Count(*search.pattern, *search.scene);
    plain_probes.push_back(static_cast<double>(count.probes));
  }
  table.AddCounts("coarse search, probes", "plain form", "probes", probes, plain_probes);
  table.AddCounts("coarse search, probes and looks at the map", "plain form", "probes",
                  probes_and_looks, plain_probes);
}

void CompareCoarseTimes(const Workload& workload, RatioTable& table) {
  LibraryCoarseSearch library_search;
  PlainCoarseSearch plain_search;
  std::vector<RatioTable::Sample> samples;
  for (const SearchCase& search : workload.searches) {
    const auto ours = [&] { return library_search(*search.pattern, *search.scene).seconds; };
    const auto theirs = [&] { return plain_search(*search.pattern, *search.scene); };
    samples.push_back({TimeInTurn(ours, theirs)});
  }
  table.AddTimes("coarse search", "plain form", "ms", samples);
}

}  // namespace

void RegisterCoarseSearch(const Workload& workload) {
  benchmark::RegisterBenchmark("CoarseSearch/plain",
                               [&workload](benchmark::State& state) {
                                 PlainCoarseSearch run;
                                 TimePasses(state, workload.searches, [&](std::size_t i) {
                                   const SearchCase& search = workload.searches[i];
                                   return run(*search.pattern, *search.scene);
                                 });
                               })
      ->UseManualTime()
      ->Unit(benchmark::kMillisecond);
}

void CompareCoarseSearch(const Workload& workload, RatioTable& table) {
  CompareCoarseCounts(workload, table);
  CompareCoarseTimes(workload, table);
}

}  // namespace orvandel::bench
