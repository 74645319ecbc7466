#pragma once

#include <array>
#include <cmath>
#include <memory>

#include "examples/render/parts.h"
#include "examples/render/scene.h"
#include "shape/find_shapes.h"
#include "shape/learn_shape.h"
#include "tests/support/grey_image.h"

namespace orvandel::test {

inline GreyImage PatternOf(const render::Part& part, const render::Imaging& imaging = {}) {
  return ToGreyImage(render::RenderPattern(part, imaging));
}

inline GreyImage SceneOf(const render::Part& part, const render::Pose& pose,
                         const render::Imaging& imaging = {}, render::Size size = {}) {
  return ToGreyImage(render::RenderScene({{part, pose}}, imaging, size));
}

/// Learnt without chance levels, which take most of the time.
inline std::shared_ptr<const shape::ShapeModel> Learnt(const GreyImage& image) {
  shape::LearnOptions options;
  options.learns_chance = false;
  return shape::LearnShape(image.View(), options).model;
}

inline Similarity ToSimilarity(const render::Pose& pose) {
  return {pose.x, pose.y, pose.angle_deg * (kPi / 180.0), pose.scale};
}

/// Mean distance of the corners of a frame as two poses carry them, pixels.
inline double CornerError(const Similarity& a, const Similarity& b, render::Size frame) {
  const SimilarityMap by_a(a);
  const SimilarityMap by_b(b);
  double sum = 0.0;
  for (const double x : {-0.5, 0.5}) {
    for (const double y : {-0.5, 0.5}) {
      const Point corner = {x * frame.width, y * frame.height};
      const Point step = by_a * corner - by_b * corner;
      sum += std::sqrt(Dot(step, step));
    }
  }
  return 0.25 * sum;
}

}  // namespace orvandel::test
