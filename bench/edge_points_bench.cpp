// The shape engine's edge stage, beside OpenCV's Canny.

#include <cstddef>
#include <cstdint>
#include <map>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "bench/image_view_of.h"
#include "bench/opencv_canny.h"
#include "bench/passes.h"
#include "bench/stages.h"
#include "bench/stopwatch.h"
#include "platform/simd_level.h"
#include "shape/edges/edge_detection.h"

namespace orvandel::bench {
namespace {

constexpr char kUnit[] = "ms/megapixel";

/// A detector with its buffers, as a host has them for its camera.
class EdgePointsRun {
 public:
  double operator()(const NamedImage& input) {
    const ImageView8 image = ViewOf(*input.image);
    return SecondsOf([&] {
      DetectEdgePoints(image, shape::edges::kUsualLeastStrength, buffers_->workspace,
                       buffers_->points);
    });
  }

 private:
  struct Buffers {
    shape::edges::EdgeWorkspace workspace;
    shape::edges::EdgePoints points;
  };
  std::shared_ptr<Buffers> buffers_ = std::make_shared<Buffers>();
};

/// The same on the image with 256 times its grey values.
class DeepEdgePointsRun {
 public:
  double operator()(const NamedImage& input) {
    const tImage& image = *input.image;
    std::vector<std::uint16_t>& pixels = buffers_->pixels;
    pixels.clear();
    for (int y = 0; y < image.height; ++y) {
      for (int x = 0; x < image.width; ++x)
        pixels.push_back(static_cast<std::uint16_t>(256 * image.row[y][x]));
    }
    const ImageView16 view = {pixels.data(), image.width, image.height,
                              2 * static_cast<std::ptrdiff_t>(image.width)};
    return SecondsOf([&] {
      DetectEdgePoints(view, 256 * shape::edges::kUsualLeastStrength, buffers_->workspace,
                       buffers_->points);
    });
  }

 private:
  struct Buffers {
    std::vector<std::uint16_t> pixels;
    shape::edges::EdgeWorkspace workspace;
    shape::edges::EdgePoints points;
  };
  std::shared_ptr<Buffers> buffers_ = std::make_shared<Buffers>();
};

template <typename Run>
void Compare(const Workload& workload, const std::string& work, RatioTable& table) {
  std::vector<RatioTable::Sample> samples;
  for (const NamedImage& input : workload.images) {
    Run ours;
    OpenCvCanny theirs;
    samples.push_back({TimeInTurn([&] { return ours(input); }, [&] { return theirs(input); }),
                       input.Megapixels()});
  }
  table.AddTimes(work, "OpenCV's Canny", kUnit, samples);
}

}  // namespace

void RegisterEdgePoints(const Workload& workload) {
  RegisterImagePasses("EdgePoints/8_bits", workload.images, [] { return EdgePointsRun(); });
  RegisterImagePasses("EdgePoints/16_bits", workload.images, [] { return DeepEdgePointsRun(); });
}

void CompareEdgePoints(const Workload& workload, RatioTable& table) {
  if (!kHasOpenCv) return;
  const SimdLevel before = ActiveSimdLevel();
  for (const SimdLevel level : SupportedSimdLevels()) {
    ForceSimdLevel(level);
    Compare<EdgePointsRun>(workload, std::string("edge points, ") + NameOf(level), table);
  }
  ForceSimdLevel(before);
  Compare<DeepEdgePointsRun>(workload, "edge points of 16-bit images", table);
}

}  // namespace orvandel::bench
