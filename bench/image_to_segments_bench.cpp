// From an image to line segments: crawl, smooth, resample, sort, extract.

#include "bench/passes.h"
#include "bench/segment_runs.h"
#include "bench/stages.h"

namespace orvandel::bench {
namespace {

template <typename Run>
void Register(const Workload& workload, const char* name) {
  benchmark::RegisterBenchmark(name,
                               [&workload](benchmark::State& state) {
                                 Run run;
                                 TimePicturePasses(state, workload.pictures, run);
                               })
      ->UseManualTime()
      ->Unit(benchmark::kMillisecond);
}

}  // namespace

void RegisterImageToSegments(const Workload& workload) {
  Register<LibrarySegments>(workload, "ImageToSegments/library");
  Register<PlainSegments>(workload, "ImageToSegments/plain");
}

void CompareImageToSegments(const Workload& workload, RatioTable& table) {
  std::vector<RatioTable::Sample> samples;
  for (const Picture& picture : workload.pictures) {
    LibrarySegments ours;
    PlainSegments theirs;
    samples.push_back({TimeInTurn([&] { return ours(picture); }, [&] { return theirs(picture); }),
                       picture.Megapixels()});
  }
  table.AddTimes("image to line segments", "plain form", "ms/megapixel", samples);
}

}  // namespace orvandel::bench
