#include "base/trigonometry.h"

#include <cmath>

#include "base/trigonometry_core.simd.h"

namespace orvandel {

SinCos SinCosOf(double angle) {
  if (!IsNearAngle(angle)) return {std::sin(angle), std::cos(angle)};
  return SinCosNear(angle);
}

double Sin(double angle) {
  return SinCosOf(angle).sine;
}

double Cos(double angle) {
  return SinCosOf(angle).cosine;
}

double ArcTan2(double y, double x) {
  return IsNearPoint(y, x) ? ArcTan2Near(y, x) : std::atan2(y, x);
}

double Hypot(double x, double y) {
  if (!IsNearPoint(y, x)) return std::hypot(x, y);
  const DoubleDouble x_square = TwoProduct(x, x);
  const DoubleDouble y_square = TwoProduct(y, y);
  const DoubleDouble square = x_square + y_square;
  const double length = std::sqrt(square.high);
  // One Newton step from the rounded root, with the exact remainder.
  const DoubleDouble product = TwoProduct(length, length);
  const double remainder = ((square.high - product.high) - product.low) + square.low;
  return length + remainder / (2.0 * length);
}

}  // namespace orvandel
