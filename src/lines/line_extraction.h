#pragma once

#include <vector>

#include "contours/contour_set.h"
#include "lines/line_options.h"
#include "lines/line_segment.h"

namespace orvandel {

/// Turns contours into straight line segments: marks the points that lie on straight ranges, fits a line
/// through each run of them, and joins the two pieces that meet at the seam of a closed contour.
///
/// @param contours  their flags are overwritten: 1 on a straight range, else 0.
/// @return  the segments, most points first; of equal counts the one found later comes first.
/// @throws std::bad_alloc, std::length_error
std::vector<LineSegment> ExtractSegments(const ContourSetView& contours,
                                         const LineOptions& options);

}  // namespace orvandel
