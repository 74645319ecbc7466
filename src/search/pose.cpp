#include "search/pose.h"

#include "base/trigonometry.h"

namespace orvandel {

Rotation::Rotation(double radians) : angle(radians), turn(SinCosOf(radians)) {}

Pose PoseThrough(Point anchor, const Rotation& rotation, double scale, Point to_reference) {
  const auto [dx, dy] = to_reference;
  const auto [sine, cosine] = rotation.turn;
  return {scale * (cosine * dx - sine * dy) + anchor.x,
          scale * (sine * dx + cosine * dy) + anchor.y, rotation.angle, scale};
}

}  // namespace orvandel
