#include "shape/refinement/scene_source.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "base/rounding.h"

namespace orvandel::shape {
namespace {

/// Pixels each way that the wider kernel takes.
constexpr int kWidestKernel = 8;

struct Box {
  double left;
  double top;
  double right;
  double bottom;
};

void Include(Point point, Box& box) {
  box.left = std::min(box.left, point.x);
  box.right = std::max(box.right, point.x);
  box.top = std::min(box.top, point.y);
  box.bottom = std::max(box.bottom, point.y);
}

/// The box around the pattern image, carried by a pose.
Box BoxAround(const RefinementModel& model, const Similarity& to_from_pattern) {
  const SimilarityMap map(to_from_pattern);
  Box box = {1e9, 1e9, -1e9, -1e9};
  for (const double x : {0.0, model.width - 1.0}) {
    for (const double y : {0.0, model.height - 1.0}) {
      Include(map * (Point{x, y} - model.origin), box);
    }
  }
  return box;
}

/// Width and height of the source's own pixels.
std::pair<int, int> SizeOf(const SceneSource& source) {
  if (source.level > 0) return {source.means.width, source.means.height};
  return std::visit(
      [](const auto& image) { return std::pair<int, int>(image.width, image.height); },
      source.scene);
}

int ClampedFloor(double value, int high) {
  return static_cast<int>(std::clamp(std::floor(value), 0.0, static_cast<double>(high)));
}

/// Means of blocks of the scene. Sums of whole numbers below 2^24 are exact.
template <typename Pixel>
void TakeMeans(const ImageViewOf<Pixel>& scene, SceneSource& source) {
  const int side = 1 << source.level;
  const float share = 1.0F / static_cast<float>(side * side);
  for (int y = 0; y < source.means.height; ++y) {
    float* const out = source.means.Row(y);
    std::fill_n(out, source.means.width, 0.0F);
    for (int j = 0; j < side; ++j) {
      const Pixel* const row = scene.Row((source.top + y) * side + j) + source.left * side;
      for (int x = 0; x < source.means.width; ++x) {
        for (int i = 0; i < side; ++i)
          out[x] += static_cast<float>(row[x * side + i]);
      }
    }
    for (int x = 0; x < source.means.width; ++x)
      out[x] *= share;
  }
}

template <typename Pixel>
void OpenMeans(const ImageViewOf<Pixel>& image, const RefinementModel& model,
               const Similarity& scene_from_pattern, double margin_px, SceneSource& source) {
  const Box box = BoxAround(model, AtLevel(scene_from_pattern, source.level));
  const int width = image.width >> source.level;
  const int height = image.height >> source.level;
  source.left = ClampedFloor(box.left - margin_px, width);
  source.top = ClampedFloor(box.top - margin_px, height);
  source.means.Resize(ClampedFloor(box.right + margin_px + 1.0, width) - source.left,
                      ClampedFloor(box.bottom + margin_px + 1.0, height) - source.top);
  TakeMeans(image, source);
}

/// A whole grey level near the middle of what the part's surroundings have.
template <typename Pixel>
double TypicalGrey(const ImageViewOf<Pixel>& scene, const Box& box) {
  constexpr int kGrid = 5;  // points a side
  double sum = 0.0;
  for (int j = 0; j < kGrid; ++j) {
    const double down = (j + 0.5) / kGrid;
    const int y = ClampedFloor(box.top + down * (box.bottom - box.top), scene.height - 1);
    for (int i = 0; i < kGrid; ++i) {
      const double along = (i + 0.5) / kGrid;
      const int x = ClampedFloor(box.left + along * (box.right - box.left), scene.width - 1);
      sum += scene.Row(y)[x];
    }
  }
  return std::floor(sum / (kGrid * kGrid));
}

}  // namespace

Similarity AtLevel(const Similarity& scene_from_pattern, int level) {
  const double side = std::ldexp(1.0, level);
  Similarity at_level = scene_from_pattern;
  at_level.x = (scene_from_pattern.x + 0.5) / side - 0.5;
  at_level.y = (scene_from_pattern.y + 0.5) / side - 0.5;
  at_level.scale = scene_from_pattern.scale / side;
  return at_level;
}

bool OpenScene(const ImageView& scene, int level, const RefinementModel& model,
               const Similarity& scene_from_pattern, double margin_px, SceneSource& source) {
  source.scene = scene;
  source.level = level;
  source.left = 0;
  source.top = 0;
  source.offset = 0.0;
  std::visit(
      [&](const auto& image) {
        if (image.IsEmpty()) return;
        source.offset = TypicalGrey(image, BoxAround(model, scene_from_pattern));
        if (level > 0) OpenMeans(image, model, scene_from_pattern, margin_px, source);
      },
      scene);
  const auto [width, height] = SizeOf(source);
  return std::min(width, height) >= kWidestKernel;
}

ImagePlace PlaceIn(const SceneSource& source, const Similarity& scene_from_pattern) {
  const Similarity at_level = AtLevel(scene_from_pattern, source.level);
  const SinCos turn = SinCosOf(at_level.angle);
  return {at_level.x - source.left, at_level.y - source.top, at_level.scale * turn.cosine,
          at_level.scale * turn.sine};
}

void SampleScene(const SceneSource& source, const Similarity& scene_from_pattern,
                 const StripKernels& kernels, const Strip& strip, float* values, float* inside) {
  const ImagePlace place = PlaceIn(source, scene_from_pattern);
  const auto offset = static_cast<float>(source.offset);
  const auto sample = [&](const auto& grid, const auto& function) {
    function(grid, place, strip.x.data(), strip.y.data(), strip.Size(), offset, values, inside);
  };
  if (source.level > 0) {
    const PixelGrid<float> grid = {source.means.grey.data(),
                                   static_cast<std::ptrdiff_t>(sizeof(float)) * source.means.width,
                                   source.means.width, source.means.height};
    sample(grid, source.is_wide ? kernels.sample_wide_float : kernels.sample_float);
  } else if (const auto* const image = std::get_if<ImageView8>(&source.scene)) {
    const PixelGrid<std::uint8_t> grid = {image->pixels, image->stride, image->width,
                                          image->height};
    sample(grid, source.is_wide ? kernels.sample_wide_8 : kernels.sample_8);
  } else if (const auto* const deep = std::get_if<ImageView16>(&source.scene)) {
    const PixelGrid<std::uint16_t> grid = {deep->pixels, deep->stride, deep->width, deep->height};
    sample(grid, source.is_wide ? kernels.sample_wide_16 : kernels.sample_16);
  }
}

SourceBox BoxInSource(const SceneSource& source, const Strip& strip,
                      const Similarity& scene_from_pattern) {
  if (strip.Size() == 0) return {};
  constexpr double kKernelReach = 4.0;  // of the wider kernel, and one for rounding
  const ImagePlace place = PlaceIn(source, scene_from_pattern);
  Box box = {1e9, 1e9, -1e9, -1e9};
  for (const double x : {static_cast<double>(strip.left), static_cast<double>(strip.right)}) {
    for (const double y : {static_cast<double>(strip.top), static_cast<double>(strip.bottom)})
      Include({place.x + place.cosine * x - place.sine * y,
               place.y + place.sine * x + place.cosine * y},
              box);
  }
  const auto [width, height] = SizeOf(source);
  SourceBox pixels;
  pixels.left = ClampedFloor(box.left - kKernelReach, width);
  pixels.top = ClampedFloor(box.top - kKernelReach, height);
  pixels.width = ClampedFloor(box.right + kKernelReach + 1.0, width) - pixels.left;
  pixels.height = ClampedFloor(box.bottom + kKernelReach + 1.0, height) - pixels.top;
  return pixels;
}

}  // namespace orvandel::shape
