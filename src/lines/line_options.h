#pragma once

#include <cstdint>

#include "base/rounding.h"

namespace orvandel {

/// How straight a range of contour points must be to become a segment.
struct LineOptions {
  /// Pixels that a point may lie from the chord between its neighbours. Edge points of a straight edge scatter
  /// by a tenth; a larger value accepts rounder ranges.
  double max_deviation = 0.25;
  /// Points from a point to either end of its chord; also the largest gap in pixels across which pieces of a
  /// closed contour are joined. A longer chord tells gentle curves from straight ranges, and loses more points
  /// at each corner.
  std::int32_t neighbour_offset = 3;
  /// Pixels RMS from the fitted line; at it and above a range is dropped. Chords let a wide arc pass, this does
  /// not.
  double max_fit_error = 1.0;
  /// A range of no more points is dropped: its direction would be mostly noise.
  std::int32_t min_points = 4;
  /// Radians; pieces of a closed contour that differ by it or more are not joined.
  double max_join_angle = kPi / 180;
};

}  // namespace orvandel
