#pragma once

#include <cstdint>

#include "base/geometry.h"

namespace orvandel {

/// One straight range of one contour. Positions in pixels, y down; angles in radians.
///
/// A segment joined across the seam of a closed contour has 0 in `direction`, `gradient_direction` and
/// `length`.
struct LineSegment {
  Point start;
  Point end;
  Point mid;                        ///< halfway between start and end
  double line_angle = 0.0;          ///< fitted line: y * cos(angle) - x * sin(angle) = offset
  double line_offset = 0.0;         ///< pixels
  double direction = 0.0;           ///< of the segment, [-pi, pi)
  double gradient_direction = 0.0;  ///< circular mean over the points, [-pi, pi]
  double length = 0.0;              ///< from start to end, pixels
  double fit_error = 0.0;           ///< pixels RMS of the fitted points from the line
  std::int32_t num_points = 0;      ///< points in the line fit; the end point is not among them
  std::int32_t contour_index = 0;   ///< contour of the set that was extracted
};

}  // namespace orvandel
