#pragma once

#include "contours/contour_set.h"
#include "lines/line_options.h"

namespace orvandel {

/// Flags the points of a contour that lie within `max_deviation` of the chord between the points
/// `neighbour_offset` before and after them: 1, else 0. Of an open contour the first and last
/// `neighbour_offset` flags stay as they are.
///
/// @return  false when the contour is too short, or the offset not positive; then nothing is written.
bool MarkStraightPoints(const ContourView& contour, const LineOptions& options);

}  // namespace orvandel
