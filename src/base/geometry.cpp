#include "base/geometry.h"

#include <cmath>

#include "base/rounding.h"

namespace orvandel {

Similarity operator*(const Similarity& left, const Similarity& right) {
  const Point shift = left * Point{right.x, right.y};
  return {shift.x, shift.y, left.angle + right.angle, left.scale * right.scale};
}

Similarity Inverse(const Similarity& similarity) {
  const Similarity rotation_back = {0.0, 0.0, -similarity.angle, 1.0 / similarity.scale};
  const Point shift = rotation_back * Point{-similarity.x, -similarity.y};
  return {shift.x, shift.y, rotation_back.angle, rotation_back.scale};
}

double NormalizedAngle(double radians) {
  const double wrapped = std::remainder(radians, kTwoPi);  // exact, in [-pi, pi]
  return wrapped <= -kPi ? kPi : wrapped;
}

}  // namespace orvandel
