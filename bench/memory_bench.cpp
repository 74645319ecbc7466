// What a search takes of the heap.

#include <vector>

#include "bench/heap_peak.h"
#include "bench/stages.h"
#include "bench/working_copy.h"
#include "orvandel/classic/qrsis.h"

namespace orvandel::bench {
namespace {

constexpr double kRecordBytes = 25;  // of the edge record, a pixel

/// Bytes a pixel that a trained object's first searches in a scene take, at most, beside the scene's edge
/// record. The second one begins with the first one's contours.
double WorkingStorage(const SearchCase& search, WorkingCopy& image) {
  QRSIS searcher;
  searcher.Initialize();
  searcher.TrainIt(image.Restored(*search.pattern->image));

  image.Restored(*search.scene->image);  // what the host holds does not count
  const HeapPeak peak;
  for (int i = 0; i < 2; ++i)
    searcher.LookForIt(image.Restored(*search.scene->image));
  const double pixels = search.scene->Megapixels() * 1e6;
  return static_cast<double>(peak.Bytes()) / pixels - kRecordBytes;
}

}  // namespace

void CompareMemory(const Workload& workload, RatioTable& table) {
  if (!HeapPeak::IsMeasured()) return;
  WorkingCopy image;
  std::vector<double> ours;
  for (const SearchCase& search : workload.searches)
    ours.push_back(WorkingStorage(search, image));
  const std::vector<double> records(ours.size(), kRecordBytes);
  table.AddCounts("`LookForIt`, working storage", "the edge record", "bytes/pixel", ours, records);
}

}  // namespace orvandel::bench
