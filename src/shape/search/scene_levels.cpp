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
    derived.has_gradients = derived.has_edges = false;
  noise_ = EstimateNoise(pyramid_.Level(0));
}

const GradientPlane& SceneLevels::Gradients(int level) {
  Derived& derived = derived_[static_cast<std::size_t>(level)];
  if (!derived.has_gradients) ComputeGradients(pyramid_.Level(level), derived.gradients);
  derived.has_gradients = true;
  return derived.gradients;
}

std::span<const SceneEdge> SceneLevels::Edges(int level) {
  const GradientPlane& gradients = Gradients(level);
  Derived& derived = derived_[static_cast<std::size_t>(level)];
  if (!derived.has_edges) FindSceneEdges(gradients, LeastSlope(level), derived.edges);
  derived.has_edges = true;
  return derived.edges;
}

float SceneLevels::LeastSlope(int level) const {
  // Each halving averages four pixels, so their noise halves too.
  const double noise = kSobelNoise * noise_ / static_cast<double>(1 << level) / kUnitsPerGrey;
  return kUnitsPerSlope * static_cast<float>(std::max(kLeastSlope, kNoiseDeviations * noise));
}

}  // namespace orvandel::shape
