#pragma once

#include "base/geometry.h"

namespace orvandel::evaluation {

// Two counts of pixels meet here and nowhere else. Manifests, finders and all that the tool prints
// put the centre of the top-left pixel at (0, 0); the segment engine and its classic face put it at
// (0.5, 0.5), as do drawings. Moving by half a pixel is exact for positions of 0.25 and more.

inline constexpr Point kHalfPixel = {0.5, 0.5};

inline Point FromClassicPixels(Point p) {
  return p - kHalfPixel;
}

inline Point ToClassicPixels(Point p) {
  return p + kHalfPixel;
}

/// The same pose in a scene that is counted the other way; the pattern's points are measured from
/// its origin either way.
inline Similarity FromClassicPixels(const Similarity& pose) {
  const Point at = FromClassicPixels(Point{pose.x, pose.y});
  return {at.x, at.y, pose.angle, pose.scale};
}

inline Similarity ToClassicPixels(const Similarity& pose) {
  const Point at = ToClassicPixels(Point{pose.x, pose.y});
  return {at.x, at.y, pose.angle, pose.scale};
}

}  // namespace orvandel::evaluation
