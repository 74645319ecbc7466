#pragma once

#include <string>
#include <vector>

#include <benchmark/benchmark.h>

#include "bench/workload.h"

namespace orvandel::bench {

/// Runs a benchmark whose iterations are passes over all inputs: what a branch predictor learns of
/// one scene helps it little in the next, and every input weighs the same. `seconds_of(i)` runs
/// input i and returns the seconds that count.
template <typename Inputs, typename SecondsOfInput>
void TimePasses(benchmark::State& state, const Inputs& inputs, SecondsOfInput&& seconds_of) {
  for (std::size_t i = 0; i < inputs.size(); ++i)
    seconds_of(i);  // warms the buffers of every size
  double total_s = 0;
  for (auto _ : state) {
    double pass_s = 0;
    for (std::size_t i = 0; i < inputs.size(); ++i)
      pass_s += seconds_of(i);
    state.SetIterationTime(pass_s);
    total_s += pass_s;
  }
  const double num_runs =
      static_cast<double>(state.iterations()) * static_cast<double>(inputs.size());
  state.counters["ms_per_input"] = 1000 * total_s / num_runs;
  state.counters["inputs"] = static_cast<double>(inputs.size());
}

/// As above over images, with the mean time per megapixel beside it.
template <typename SecondsOfImage>
void TimeImagePasses(benchmark::State& state, const std::vector<NamedImage>& images,
                     SecondsOfImage&& seconds_of) {
  TimePasses(state, images, [&](std::size_t i) { return seconds_of(images[i]); });
  double megapixels = 0;
  for (const NamedImage& input : images)
    megapixels += input.Megapixels();
  state.counters["ms_per_megapixel"] =
      state.counters["ms_per_input"].value * static_cast<double>(images.size()) / megapixels;
}

/// Registers a benchmark of passes over images, which outlive it. `make_run()` makes what times one
/// image.
template <typename MakeRun>
void RegisterImagePasses(const std::string& name, const std::vector<NamedImage>& images,
                         const MakeRun& make_run) {
  benchmark::RegisterBenchmark(name.c_str(),
                               [&images, make_run](benchmark::State& state) {
                                 auto run = make_run();
                                 TimeImagePasses(state, images, run);
                               })
      ->UseManualTime()
      ->Unit(benchmark::kMillisecond);
}

/// As above over searches, timed by a `Run`.
template <typename Run>
void RegisterSearchPasses(const char* name, const std::vector<SearchCase>& searches) {
  benchmark::RegisterBenchmark(name,
                               [&searches](benchmark::State& state) {
                                 Run run;
                                 TimePasses(state, searches, [&](std::size_t i) {
                                   return run(*searches[i].pattern, *searches[i].scene);
                                 });
                               })
      ->UseManualTime()
      ->Unit(benchmark::kMillisecond);
}

}  // namespace orvandel::bench
