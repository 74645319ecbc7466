#pragma once

#include <cstdint>
#include <optional>

#include "lines/line_segment.h"

namespace orvandel::plain {

/// The points of one contour, as its set holds them.
struct ContourPoints {
  const double* x;
  const double* y;
  const double* g;            ///< gradient directions, radians
  const std::int32_t* flags;  ///< 1 on a straight range
  std::int32_t size;
  std::int32_t contour_index;
};

/// A run of flagged points: the first, and the last, at which the run's line ends.
struct StraightRun {
  std::int32_t first;
  std::int32_t last;
};

/// What a run must meet to become a segment.
struct FitLimits {
  double max_fit_error;     ///< pixels RMS; at it and above a run is dropped
  std::int32_t min_points;  ///< a run of no more points is dropped
};

/// Fits a line through the points of a run but its last one, which only ends the segment.
///
/// @return  the segment, or nothing when the run is too short or not straight enough.
std::optional<LineSegment> FitSegment(const ContourPoints& contour, StraightRun run,
                                      const FitLimits& limits);

}  // namespace orvandel::plain
