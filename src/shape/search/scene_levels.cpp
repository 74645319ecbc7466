#include "shape/search/scene_levels.h"

#include <algorithm>

namespace orvandel::shape {
namespace {

/// No slope counts that is not this many deviations of its noise ...
constexpr double kNoiseDeviations = 3.0;
/// ... and this many grey levels a pixel: rounding to 8 bits makes steps too.
constexpr double kLeastSlope = 0.6;

}  // namespace

void SceneLevels::Build(const ImageView& scene, int num_levels) {
  pyramid_.Build(scene, num_levels);
  const auto wanted = static_cast<std::size_t>(pyramid_.NumLevels());
  if (derived_.size() < wanted) derived_.resize(wanted);
  for (Derived& derived : derived_)
    derived.is_started = derived.has_all = derived.has_edges = false;
  noise_ = EstimateNoise(pyramid_.Image());
}

PartialGradients& SceneLevels::Started(int level) {
  Derived& derived = derived_[static_cast<std::size_t>(level)];
  if (!derived.is_started) {
    if (level == 0)
      derived.gradients.Start(pyramid_.Image());
    else
      derived.gradients.Start(pyramid_.Level(level));
  }
  derived.is_started = true;
  return derived.gradients;
}

const GradientPlane& SceneLevels::Gradients(int level) {
  Derived& derived = derived_[static_cast<std::size_t>(level)];
  if (!derived.has_all) Started(level).MakeAll();
  derived.has_all = true;
  return derived.gradients.Plane();
}

const GradientPlane& SceneLevels::GradientsAround(int level, Point centre, double reach) {
  Derived& derived = derived_[static_cast<std::size_t>(level)];
  if (derived.has_all) return derived.gradients.Plane();
  PartialGradients& gradients = Started(level);
  const auto column = [&gradients](double x) {
    return static_cast<std::int32_t>(
        std::clamp(x, 0.0, static_cast<double>(gradients.Plane().width)));
  };
  const auto row = [&gradients](double y) {
    return static_cast<std::int32_t>(
        std::clamp(y, 0.0, static_cast<double>(gradients.Plane().height)));
  };
  // Samples beyond the border are those of the border.
  gradients.Make({std::min(column(centre.x - reach), gradients.Plane().width - 1),
                  std::min(row(centre.y - reach), gradients.Plane().height - 1),
                  column(centre.x + reach) + 1, row(centre.y + reach) + 1});
  return gradients.Plane();
}

std::span<const SceneEdge> SceneLevels::Edges(int level) {
  const GradientPlane& gradients = Gradients(level);
  Derived& derived = derived_[static_cast<std::size_t>(level)];
  if (!derived.has_edges)
    FindSceneEdges(gradients, LeastSlope(level), edge_buffers_, derived.edges);
  derived.has_edges = true;
  return derived.edges;
}

float SceneLevels::LeastSlope(int level) const {
  // Each halving averages four pixels, so their noise halves too.
  const double noise = kSobelNoise * noise_ / static_cast<double>(1 << level) / kUnitsPerGrey;
  return kUnitsPerSlope * static_cast<float>(std::max(kLeastSlope, kNoiseDeviations * noise));
}

}  // namespace orvandel::shape
