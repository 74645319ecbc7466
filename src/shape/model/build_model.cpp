#include "shape/model/build_model.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "image/pyramid.h"
#include "shape/model/pattern_edges.h"
#include "shape/model/point_choice.h"

namespace orvandel::shape {
namespace {

/// Points for the exhaustive search: byte sums of 4 votes each hold 63.
constexpr std::size_t kCoarsePoints = 48;
constexpr std::size_t kFinePoints = 128;
/// A score is a mean: more points would not tell it better than edges differ from one to the next.
constexpr std::size_t kAllPoints = 800;

/// Fewer edge points than this say nothing about a pose.
constexpr std::size_t kLeastPoints = 8;

/// The search looks at patterns of about 20 pixels, in gradients down to 10; smaller images are of no use.
constexpr double kLeastSide = 10.0;

template <typename Pixel>
std::vector<Pixel> CopyPixels(const ImageViewOf<Pixel>& image) {
  std::vector<Pixel> pixels;
  pixels.reserve(static_cast<std::size_t>(image.width) * static_cast<std::size_t>(image.height));
  for (std::int32_t y = 0; y < image.height; ++y)
    pixels.insert(pixels.end(), image.Row(y), image.Row(y) + image.width);
  return pixels;
}

PatternImage CopyImage(const ImageView& image) {
  PatternImage copy;
  std::visit(
      [&copy](const auto& view) {
        copy.width = view.width;
        copy.height = view.height;
        copy.pixels = CopyPixels(view);
      },
      image);
  return copy;
}

double FarthestOf(const std::vector<EdgePoint>& points) {
  double square = 0.0;
  for (const EdgePoint& point : points)
    square = std::max(square, Dot(point.at, point.at));
  return std::sqrt(square);
}

}  // namespace

std::optional<ShapeModel> BuildModel(const ImageView& image, const ImageView8& mask,
                                     const std::optional<Point>& origin) {
  ShapeModel model;
  model.image = CopyImage(image);
  const Point centre = {0.5 * (model.image.width - 1), 0.5 * (model.image.height - 1)};
  model.origin = origin ? *origin - centre : Point{};

  const double noise = EstimateNoise(UnitImage(model.image.View()));
  const double side = std::sqrt(model.Width() * model.Height());
  const double half_octave = std::sqrt(2.0);
  for (double factor = 1.0; factor == 1.0 || side / factor >= kLeastSide; factor *= half_octave) {
    const FactorImage shrunk = ShrinkPattern(model.image, factor);
    const std::vector<EdgePoint> points = FindPatternEdges(shrunk, model.image, mask, noise);
    if (points.size() < kLeastPoints) continue;
    if (model.levels.empty()) {
      model.hull = ConvexHull(points);
      model.radius = FarthestOf(points);
    }
    model.reach = std::max(model.reach, FarthestOf(points));
    model.levels.push_back({factor, ToArrays(ChoosePoints(points, kCoarsePoints)),
                            ToArrays(ChoosePoints(points, kFinePoints)),
                            ToArrays(ChoosePoints(points, kAllPoints))});
  }
  if (model.levels.empty()) return std::nullopt;
  return model;
}

}  // namespace orvandel::shape
