#pragma once

#include "base/geometry.h"
#include "base/trigonometry.h"

namespace orvandel {

/// An angle in radians with its sine and cosine.
struct Rotation {
  explicit Rotation(double radians) : angle(radians), sin_cos(SinCosOf(radians)) {}
  double angle;
  SinCos sin_cos;
};

/// The pose of the given rotation and scale that lays a pattern point on a scene point. The order of its
/// operations is part of all results.
///
/// @param anchor        the scene point.
/// @param to_reference  from the pattern point to the pattern's reference point.
inline Similarity PoseThrough(Point anchor, const Rotation& rotation, double scale,
                              Point to_reference) {
  const auto [dx, dy] = to_reference;
  const auto [sine, cosine] = rotation.sin_cos;
  return {scale * (cosine * dx - sine * dy) + anchor.x,
          scale * (sine * dx + cosine * dy) + anchor.y, rotation.angle, scale};
}

}  // namespace orvandel
