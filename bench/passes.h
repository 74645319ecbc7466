#pragma once

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

/// As above over pictures, with the mean time per megapixel beside it.
template <typename SecondsOfPicture>
void TimePicturePasses(benchmark::State& state, const std::vector<Picture>& pictures,
                       SecondsOfPicture&& seconds_of) {
  TimePasses(state, pictures, [&](std::size_t i) { return seconds_of(pictures[i]); });
  double megapixels = 0;
  for (const Picture& picture : pictures)
    megapixels += picture.Megapixels();
  state.counters["ms_per_megapixel"] =
      state.counters["ms_per_input"].value * static_cast<double>(pictures.size()) / megapixels;
}

}  // namespace orvandel::bench
