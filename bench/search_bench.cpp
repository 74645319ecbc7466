// Whole searches with default parameters.

#include "bench/passes.h"
#include "bench/search_runs.h"
#include "bench/stages.h"

namespace orvandel::bench {
namespace {

bool HasUsualSize(const NamedImage& scene) {
  return scene.image->width == 640 && scene.image->height == 480;
}

/// A row for the scenes that `accept` takes, if there are any.
template <typename Accept>
void AddRow(const Workload& workload, const std::string& work, const Accept& accept,
            RatioTable& table) {
  LibrarySearch ours;
  ReferenceSearch theirs;
  std::vector<RatioTable::Sample> samples;
  for (const SearchCase& search : workload.searches) {
    if (!accept(*search.scene)) continue;
    samples.push_back({TimeInTurn([&] { return ours(*search.pattern, *search.scene); },
                                  [&] { return theirs(*search.pattern, *search.scene); })});
  }
  if (!samples.empty()) table.AddTimes(work, "reference form", "ms", samples);
}

}  // namespace

void RegisterSearch(const Workload& workload) {
  RegisterSearchPasses<LibrarySearch>("LookForIt/library", workload.searches);
  RegisterSearchPasses<ReferenceSearch>("LookForIt/reference", workload.searches);
}

void CompareSearch(const Workload& workload, RatioTable& table) {
  AddRow(workload, "`LookForIt`, 640 x 480", HasUsualSize, table);
  AddRow(
      workload, "`LookForIt`, other sizes",
      [](const NamedImage& scene) { return !HasUsualSize(scene); }, table);
}

}  // namespace orvandel::bench
