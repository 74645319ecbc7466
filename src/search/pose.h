#pragma once

#include "base/trigonometry.h"

namespace orvandel {

struct Point {
  double x;
  double y;
};

/// Where a pattern lies in a scene: the scene position of its reference point, its rotation in radians
/// and its scale. A pattern point p lies at
///   (x, y) + scale * R(angle) * (p - reference), R = [[cos, -sin], [sin, cos]], y down.
struct Pose {
  double x = 0.0;
  double y = 0.0;
  double angle = 0.0;
  double scale = 0.0;
};

/// An angle in radians with its sine and cosine.
struct Rotation {
  explicit Rotation(double radians);
  double angle;
  SinCos turn;
};

/// The pose of the given rotation and scale that lays a pattern point on a scene point.
///
/// @param to_reference  from the pattern point to the pattern's reference point.
/// @param anchor        the scene point.
Pose PoseThrough(Point anchor, const Rotation& rotation, double scale, Point to_reference);

}  // namespace orvandel
