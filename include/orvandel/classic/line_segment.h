#pragma once

#include <cstdint>

#include "orvandel/classic/export.h"

/// One straight range of one contour.
///
/// A segment joined across the seam of a closed contour carries 0 in `direction`,
/// `gradient_direction` and `length`; readers accept it as it is.
class ORVANDEL_API CLineSegment {
 public:
  CLineSegment();  ///< every field 0
  CLineSegment(const CLineSegment& other);
  CLineSegment& operator=(const CLineSegment& other);
  virtual ~CLineSegment();

  double start_x;  ///< first point, pixels
  double start_y;
  double end_x;  ///< end point, pixels
  double end_y;
  double mid_x;  ///< halfway between start and end
  double mid_y;
  double line_angle;           ///< fitted line: y * cos(angle) - x * sin(angle) = offset; radians
  double line_offset;          ///< pixels
  double direction;            ///< of the segment, radians, [-pi, pi)
  double gradient_direction;   ///< circular mean over the points, radians, [-pi, pi]
  double spare;                ///< 0
  double length;               ///< from start to end, pixels
  std::int32_t num_points;     ///< points in the line fit; the end point is not among them
  double fit_error;            ///< root mean square distance of those points from the line, pixels
  std::int32_t contour_index;  ///< contour of the set that was extracted
};

/// The order of segment arrays: true when `a` has at least as many points as `b`. Not a strict
/// order, so it is no comparator for std::sort.
ORVANDEL_API bool MorePoints(CLineSegment a, CLineSegment b);
