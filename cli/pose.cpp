#include "cli/pose.h"

#include <cmath>

#include "base/rounding.h"

namespace orvandel::cli {

double Distance(Point a, Point b) {
  return std::hypot(b.x - a.x, b.y - a.y);
}

Point operator*(const Pose& scene_from_pattern, Point p_in_pattern) {
  const Pose& pose = scene_from_pattern;
  const double c = pose.scale * std::cos(pose.angle);
  const double s = pose.scale * std::sin(pose.angle);
  const double dx = p_in_pattern.x - pose.reference.x;
  const double dy = p_in_pattern.y - pose.reference.y;
  return {pose.position.x + c * dx - s * dy, pose.position.y + s * dx + c * dy};
}

double NormalizedAngle(double radians) {
  const double angle = std::remainder(radians, kTwoPi);
  return angle <= -kPi ? kPi : angle;
}

double Degrees(double radians) {
  return radians * (180.0 / kPi);
}

}  // namespace orvandel::cli
