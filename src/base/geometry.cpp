#include "base/geometry.h"

#include <cmath>

#include "base/rounding.h"

namespace orvandel {

Similarity operator*(const Similarity& left, const Similarity& right) {
  const Point shift = left * Point{right.x, right.y};
  return {shift.x, shift.y, left.angle + right.angle, left.scale * right.scale};
}

Similarity Inverse(const Similarity& similarity) {
  const Similarity turned_back = {0.0, 0.0, -similarity.angle, 1.0 / similarity.scale};
  const Point shift = turned_back * Point{-similarity.x, -similarity.y};
  return {shift.x, shift.y, turned_back.angle, turned_back.scale};
}

double NormalizedAngle(double radians) {
  const double turned = std::remainder(radians, kTwoPi);  // exact, in [-pi, pi]
  return turned <= -kPi ? kPi : turned;
}

}  // namespace orvandel
