#pragma once

#include <span>
#include <vector>

#include "base/geometry.h"
#include "image/gradients.h"
#include "image/partial_gradients.h"
#include "image/pyramid.h"
#include "shape/search/scene_edges.h"

namespace orvandel::shape {

/// A scene at all sizes, with gradients and edges made when they are first asked for.
class SceneLevels {
 public:
  /// Forgets the scene before; memory stays allocated.
  void Build(const ImageView& scene, int num_levels);

  int NumLevels() const { return pyramid_.NumLevels(); }
  int Width() const { return pyramid_.Image().Width(); }
  int Height() const { return pyramid_.Image().Height(); }

  /// All gradients of a level.
  const GradientPlane& Gradients(int level);

  /// Those around a place, as far as `reach`; what lies beyond is of no account.
  ///
  /// @param centre  level pixels
  const GradientPlane& GradientsAround(int level, Point centre, double reach);

  /// What has been made until now.
  const GradientPlane& GradientsMade(int level) const {
    return derived_[static_cast<std::size_t>(level)].gradients.Plane();
  }

  std::span<const SceneEdge> Edges(int level);

  /// Slopes below this are noise, gradient units.
  float LeastSlope(int level) const;

 private:
  struct Derived {
    bool is_started = false;
    bool has_all = false;
    bool has_edges = false;
    PartialGradients gradients;
    std::vector<SceneEdge> edges;
  };
  PartialGradients& Started(int level);

  Pyramid pyramid_;
  std::vector<Derived> derived_;
  SceneEdgeBuffers edge_buffers_;
  double noise_ = 0.0;
};

}  // namespace orvandel::shape
