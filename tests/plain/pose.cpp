#include "tests/plain/pose.h"

#include <cmath>

namespace orvandel::plain {

Rotation::Rotation(double radians)
    : angle(radians), cosine(std::cos(radians)), sine(std::sin(radians)) {}

Pose PoseThrough(Point anchor, const Rotation& rotation, double scale, Point to_reference) {
  const auto [dx, dy] = to_reference;
  return {scale * (rotation.cosine * dx - rotation.sine * dy) + anchor.x,
          scale * (rotation.sine * dx + rotation.cosine * dy) + anchor.y, rotation.angle, scale};
}

}  // namespace orvandel::plain
