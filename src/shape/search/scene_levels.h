#pragma once

#include <span>
#include <vector>

#include "image/gradients.h"
#include "image/pyramid.h"
#include "shape/search/response_maps.h"

namespace orvandel::shape {

/// A scene at all sizes, with gradients and edges made when they are first asked for.
class SceneLevels {
 public:
  /// Forgets the scene before; memory stays allocated.
  void Build(const ImageView& scene, int num_levels);

  int NumLevels() const { return pyramid_.NumLevels(); }
  int Width() const { return pyramid_.Level(0).width; }
  int Height() const { return pyramid_.Level(0).height; }

  const GradientPlane& Gradients(int level);
  std::span<const SceneEdge> Edges(int level);

  /// Slopes below this are noise, gradient units.
  float LeastSlope(int level) const;

 private:
  struct Derived {
    bool has_gradients = false;
    bool has_edges = false;
    GradientPlane gradients;
    std::vector<SceneEdge> edges;
  };
  Pyramid pyramid_;
  std::vector<Derived> derived_;
  double noise_ = 0.0;
};

}  // namespace orvandel::shape
