#pragma once

#include "contours/contour_set.h"

namespace orvandel {

struct ResampleOptions {
  /// Pixels from one point to the next; 0 and below mean 1. A larger one makes later stages faster and
  /// coarser.
  double step = 1.0;
  /// Points nearer than this to the one before are passed over, pixels: the way to a point so near is mostly
  /// noise.
  double min_dist = 0.6;
};

/// Replaces the points of every contour by evenly spaced ones on straight ways towards the given points; the
/// first and the last one stay. Directions are circular means, flags those of the neighbours.
///
/// @param contours  the records are overwritten with where each contour lies among the new points.
/// @return  the new points.
/// @throws std::bad_alloc  with nothing changed.
PointArrays ResampleContours(const ContourSetView& contours, const ResampleOptions& options);

}  // namespace orvandel
