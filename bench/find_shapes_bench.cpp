// The shape engine: whole searches with the times of their stages, and learning.

#include <map>
#include <memory>
#include <stdexcept>
#include <string>

#include "bench/image_view_of.h"
#include "bench/passes.h"
#include "bench/stages.h"
#include "bench/stopwatch.h"
#include "shape/find_shapes.h"
#include "shape/learn_shape.h"

namespace orvandel::bench {
namespace {

using shape::FindOptions;
using shape::FindResult;
using shape::StageTimes;

/// Learnt once each; null where a pattern has too few edges.
class Models {
 public:
  const shape::ShapeModel* Of(const NamedImage& pattern) {
    const auto [entry, is_new] = models_.try_emplace(pattern.name);
    if (is_new) entry->second = shape::LearnShape(ViewOf(*pattern.image)).model;
    return entry->second.get();
  }

 private:
  std::map<std::string, std::shared_ptr<const shape::ShapeModel>> models_;
};

/// Mean times of the stages so far.
class StageMeans {
 public:
  void Add(const StageTimes& times) {
    sum_.pyramid += times.pyramid;
    sum_.response_maps += times.response_maps;
    sum_.coarse_search += times.coarse_search;
    sum_.tracking += times.tracking;
    sum_.scoring += times.scoring;
    sum_.refinement += times.refinement;
    ++count_;
  }

  void Report(benchmark::State& state) const {
    const double ms = 1e-3 / static_cast<double>(count_ > 0 ? count_ : 1);
    state.counters["pyramid_ms"] = ms * sum_.pyramid;
    state.counters["maps_ms"] = ms * sum_.response_maps;
    state.counters["coarse_ms"] = ms * sum_.coarse_search;
    state.counters["tracking_ms"] = ms * sum_.tracking;
    state.counters["scoring_ms"] = ms * sum_.scoring;
    state.counters["refinement_ms"] = ms * sum_.refinement;
  }

 private:
  StageTimes sum_;
  long count_ = 0;
};

void RegisterFind(const std::string& name, const Workload& workload, const FindOptions& options) {
  benchmark::RegisterBenchmark(
      name.c_str(),
      [&workload, options](benchmark::State& state) {
        Models models;
        shape::Workspace workspace;
        StageMeans means;
        TimePasses(state, workload.searches, [&](std::size_t i) {
          const SearchCase& search = workload.searches[i];
          const shape::ShapeModel* const model = models.Of(*search.pattern);
          if (model == nullptr) return 0.0;
          FindResult result;
          const double seconds = SecondsOf([&] {
            result = shape::FindShapes(*model, ViewOf(*search.scene->image), options, workspace);
          });
          means.Add(result.times_us);
          return seconds;
        });
        means.Report(state);
      })
      ->UseManualTime()
      ->Unit(benchmark::kMillisecond);
}

void RegisterLearn(const std::string& name, const Workload& workload, bool learns_chance) {
  benchmark::RegisterBenchmark(
      name.c_str(),
      [&workload, learns_chance](benchmark::State& state) {
        std::map<std::string, const NamedImage*> by_name;
        for (const SearchCase& search : workload.searches)
          by_name[search.pattern->name] = search.pattern.get();
        std::vector<const NamedImage*> patterns;
        for (const auto& [pattern_name, pattern] : by_name)
          patterns.push_back(pattern);
        shape::LearnOptions options;
        options.learns_chance = learns_chance;
        TimePasses(state, patterns, [&](std::size_t i) {
          return SecondsOf([&] { shape::LearnShape(ViewOf(*patterns[i]->image), options); });
        });
      })
      ->UseManualTime()
      ->Unit(benchmark::kMillisecond);
}

}  // namespace

void RegisterFindShapes(const Workload& workload) {
  FindOptions open;
  RegisterFind("FindShapes/scale_0.5_to_2", workload, open);
  FindOptions fixed;
  fixed.min_scale = fixed.max_scale = 1.0;
  RegisterFind("FindShapes/scale_1", workload, fixed);
  RegisterLearn("LearnShape", workload, /*learns_chance=*/true);
  RegisterLearn("LearnShape/without_chance", workload, /*learns_chance=*/false);
}

}  // namespace orvandel::bench
