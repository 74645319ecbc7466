// The edge detector, beside its reference form and OpenCV's Canny.

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
#include "tests/reference/stages.h"

namespace orvandel::bench {
namespace {

constexpr int kThresholds[] = {16, 32};
constexpr char kUnit[] = "ms/megapixel";

/// A detector with a working image and an edge record for each size of image, as a host has them
/// for its camera.
template <typename Detect>
class DetectorRun {
 public:
  explicit DetectorRun(Detect detect) : detect_(std::move(detect)) {}

  double operator()(const NamedImage& input) {
    const tImage& original = *input.image;
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

auto ReferenceRun(int threshold) {
  return DetectorRun([threshold](tImage* image, CEdgeImgComplement* edges) {
    test::ReferenceSubCanny(image, threshold, *edges);
  });
}

template <typename Ours, typename Theirs>
RatioTable::Sample Compare(const NamedImage& input, Ours ours, Theirs theirs) {
  return {TimeInTurn([&] { return ours(input); }, [&] { return theirs(input); }),
          input.Megapixels()};
}

}  // namespace

void RegisterSubCanny(const Workload& workload) {
  for (const int threshold : kThresholds) {
    const std::string suffix = "/threshold:" + std::to_string(threshold);
    RegisterImagePasses("SubCanny/library" + suffix, workload.images,
                        [threshold] { return LibraryRun(threshold); });
    RegisterImagePasses("SubCanny/reference" + suffix, workload.images,
                        [threshold] { return ReferenceRun(threshold); });
  }
  if (kHasOpenCv)
    RegisterImagePasses("Canny/OpenCV", workload.images, [] { return OpenCvCanny(); });
}

void CompareSubCanny(const Workload& workload, RatioTable& table) {
  for (const int threshold : kThresholds) {
    std::vector<RatioTable::Sample> against_reference;
    std::vector<RatioTable::Sample> against_opencv;
    for (const NamedImage& input : workload.images) {
      against_reference.push_back(Compare(input, LibraryRun(threshold), ReferenceRun(threshold)));
      if (kHasOpenCv) {
        against_opencv.push_back(Compare(input, LibraryRun(threshold), OpenCvCanny()));
      }
    }
    const std::string work = "`SubCanny`, threshold " + std::to_string(threshold);
    if (kHasOpenCv) table.AddTimes(work, "OpenCV's Canny", kUnit, against_opencv);
    table.AddTimes(work, "reference form", kUnit, against_reference);
  }
}

}  // namespace orvandel::bench
