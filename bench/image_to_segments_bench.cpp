// From an image to line segments: crawl, smooth, resample, sort, extract.

#include "bench/passes.h"
#include "bench/segment_runs.h"
#include "bench/stages.h"

namespace orvandel::bench {
void RegisterImageToSegments(const Workload& workload) {
  RegisterImagePasses("ImageToSegments/library", workload.images, [] { return LibrarySegments(); });
  RegisterImagePasses("ImageToSegments/reference", workload.images,
                      [] { return ReferenceSegments(); });
}

void CompareImageToSegments(const Workload& workload, RatioTable& table) {
  std::vector<RatioTable::Sample> samples;
  for (const NamedImage& input : workload.images) {
    LibrarySegments ours;
    ReferenceSegments theirs;
    samples.push_back({TimeInTurn([&] { return ours(input); }, [&] { return theirs(input); }),
                       input.Megapixels()});
  }
  table.AddTimes("image to line segments", "reference form", "ms/megapixel", samples);
}

}  // namespace orvandel::bench
