#pragma once

#include <cstdint>
#include <optional>

#include "base/sin_cos_cache.h"
#include "contours/contour_set.h"
#include "lines/line_options.h"
#include "lines/line_segment.h"

namespace orvandel {

/// A run of flagged points of a contour: the first, and the last, at which the run's line ends.
struct StraightRun {
  std::int32_t first;
  std::int32_t last;
};

/// Fits a line through the points of a run but its last one, which only ends the segment.
///
/// @param cache  of gradient directions, kept from run to run.
/// @return  the segment, of contour 0; or nothing when the run is too short or not straight enough.
std::optional<LineSegment> FitSegment(const ContourView& contour, StraightRun run,
                                      const LineOptions& options, SinCosCache& cache);

}  // namespace orvandel
