// Whole searches with default parameters.

#include "bench/passes.h"
#include "bench/search_runs.h"
#include "bench/stages.h"

namespace orvandel::bench {
namespace {

template <typename Run>
void Register(const Workload& workload, const char* name) {
  benchmark::RegisterBenchmark(name,
                               [&workload](benchmark::State& state) {
                                 Run run;
                                 TimePasses(state, workload.searches, [&](std::size_t i) {
                                   const SearchCase& search = workload.searches[i];
                                   return run(*search.pattern, *search.scene);
                                 });
                               })
      ->UseManualTime()
      ->Unit(benchmark::kMillisecond);
}

bool HasUsualSize(const Picture& scene) {
  return scene.image->width == 640 && scene.image->height == 480;
}

/// A row for the scenes that `accept` takes, if there are any.
template <typename Accept>
void AddRow(const Workload& workload, const std::string& work, const Accept& accept,
            RatioTable& table) {
  LibrarySearch ours;
  PlainSearch theirs;
  std::vector<RatioTable::Sample> samples;
  for (const SearchCase& search : workload.searches) {
    if (!accept(*search.scene)) continue;
    samples.push_back({TimeInTurn([&] { return ours(*search.pattern, *search.scene); },
                                  [&] { return theirs(*search.pattern, *search.scene); })});
  }
  if (!samples.empty()) table.AddTimes(work, "plain form", "ms", samples);
}

}  // namespace

void RegisterSearch(const Workload& workload) {
  Register<LibrarySearch>(workload, "LookForIt/library");
  Register<PlainSearch>(workload, "LookForIt/plain");
}

void CompareSearch(const Workload& workload, RatioTable& table) {
  AddRow(workload, "`LookForIt`, 640 x 480", HasUsualSize, table);
  AddRow(
      workload, "`LookForIt`, other sizes",
      [](const Picture& scene) { return !HasUsualSize(scene); }, table);
}

}  // namespace orvandel::bench
