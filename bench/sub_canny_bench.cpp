// The edge detector, beside its plain form and OpenCV's Canny.

#include <map>
#include <memory>
#include <utility>

#include "bench/opencv_canny.h"
#include "bench/passes.h"
#include "bench/stages.h"
#include "bench/stopwatch.h"
#include "bench/working_copy.h"
#include "orvandel/classic/edge_record.h"
#include "orvandel/classic/sub_canny.h"
#include "tests/plain/sub_canny.h"

namespace orvandel::bench {
namespace {

constexpr int kThresholds[] = {16, 32};
constexpr char kUnit[] = "ms/megapixel";

/// A detector with a working image and an edge record for each size of picture, as a host has them
/// for its camera.
template <typename Detect>
class DetectorRun {
 public:
  explicit DetectorRun(Detect detect) : detect_(std::move(detect)) {}

  double operator()(const Picture& picture) {
    const tImage& original = *picture.image;
    Buffers& buffers = buffers_[{original.width, original.height}];
    tImage* image = buffers.image.Restored(original);
    buffers.edges.SetSize(original.width, original.height);
    return SecondsOf([&] { detect_(image, &buffers.edges); });
  }

 private:
  struct Buffers {
    WorkingCopy image;
    CEdgeImgComplement edges;
  };
  Detect detect_;
  std::map<std::pair<int, int>, Buffers> buffers_;
};

auto LibraryRun(int threshold) {
  return DetectorRun(
      [threshold](tImage* image, CEdgeImgComplement* edges) { SubCanny(image, threshold, edges); });
}

auto PlainRun(int threshold) {
  return DetectorRun([threshold](tImage* image, CEdgeImgComplement* edges) {
    plain::SubCanny(image, threshold, edges);
  });
}

template <typename MakeRun>
void Register(const Workload& workload, const std::string& name, const MakeRun& make_run) {
  benchmark::RegisterBenchmark(name.c_str(),
                               [&workload, make_run](benchmark::State& state) {
                                 auto run = make_run();
                                 TimePicturePasses(state, workload.pictures, run);
                               })
      ->UseManualTime()
      ->Unit(benchmark::kMillisecond);
}

template <typename Ours, typename Theirs>
RatioTable::Sample Compare(const Picture& picture, Ours ours, Theirs theirs) {
  return {TimeInTurn([&] { return ours(picture); }, [&] { return theirs(picture); }),
          picture.Megapixels()};
}

}  // namespace

void RegisterSubCanny(const Workload& workload) {
  for (const int threshold : kThresholds) {
    const std::string suffix = "/threshold:" + std::to_string(threshold);
    Register(workload, "SubCanny/library" + suffix, [threshold] { return LibraryRun(threshold); });
    Register(workload, "SubCanny/plain" + suffix, [threshold] { return PlainRun(threshold); });
  }
  if (kHasOpenCv) Register(workload, "Canny/OpenCV", [] { return OpenCvCanny(); });
}

void CompareSubCanny(const Workload& workload, RatioTable& table) {
  for (const int threshold : kThresholds) {
    std::vector<RatioTable::Sample> against_plain;
    std::vector<RatioTable::Sample> against_opencv;
    for (const Picture& picture : workload.pictures) {
      against_plain.push_back(Compare(picture, LibraryRun(threshold), PlainRun(threshold)));
      if (kHasOpenCv) {
        against_opencv.push_back(Compare(picture, LibraryRun(threshold), OpenCvCanny()));
      }
    }
    const std::string work = "`SubCanny`, threshold " + std::to_string(threshold);
    if (kHasOpenCv) table.AddTimes(work, "OpenCV's Canny", kUnit, against_opencv);
    table.AddTimes(work, "plain form", kUnit, against_plain);
  }
}

}  // namespace orvandel::bench
