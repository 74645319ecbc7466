#pragma once

#include <cmath>

#include "base/geometry.h"
#include "base/rounding.h"

namespace orvandel::render {

// The pixel grid of images and truth: x right, y down, and the CENTRE of the top-left pixel is
// (0, 0), so that pixel covers the square from (-0.5, -0.5) to (0.5, 0.5). Points are in pixels or
// in a part's own units.

/// Positive when `b` lies clockwise of `a` on the screen.
inline double Cross(Point a, Point b) {
  return a.x * b.y - a.y * b.x;
}
/// Clockwise on the screen.
inline Point QuarterTurn(Point p) {
  return {-p.y, p.x};
}

inline double Length(Point p) {
  return std::sqrt(Dot(p, p));
}
inline Point Normalized(Point p) {
  return (1.0 / Length(p)) * p;
}

/// Nearest multiple of 2^-30. C libraries differ in the last bit of sin, cos and exp; values that
/// are rounded like this are the same everywhere, and so are the images made from them. At 1000
/// pixels the rounding is 5e-7 pixel.
inline double WithoutLastBits(double value) {
  constexpr double kSteps = 1073741824.0;
  return std::floor(value * kSteps + 0.5) / kSteps;
}

/// The unit vector at `angle_deg` clockwise (on the screen) of the x axis.
inline Point Direction(double angle_deg) {
  const double radians = angle_deg * (kPi / 180.0);
  return {WithoutLastBits(std::cos(radians)), WithoutLastBits(std::sin(radians))};
}

/// Where a part lies in an image. A point q of the part is seen at
///
///   (x, y) + scale * R(angle) * q      R = [[cos, -sin], [sin, cos]]
///
/// A part's origin is the centre of the image that frames it. A pixel position p of a w x h
/// pattern image is therefore q = p - ((w - 1) / 2, (h - 1) / 2), and a placement's pose is the
/// truth to expect of a search. All values are finite.
struct Pose {
  double x = 0;  ///< where the part's origin lies, pixels
  double y = 0;
  double angle_deg = 0;  ///< positive turns clockwise on the screen
  double scale = 1;      ///< pixels per part unit, above 0
};

/// The place in the image of a point of the part.
inline Point operator*(const Pose& image_from_part, Point in_part) {
  const Point along = Direction(image_from_part.angle_deg);
  return Point{image_from_part.x, image_from_part.y} +
         image_from_part.scale * (in_part.x * along + in_part.y * QuarterTurn(along));
}

}  // namespace orvandel::render
