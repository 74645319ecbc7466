#pragma once

#include <vector>

#include "lines/line_options.h"
#include "lines/line_segment.h"

namespace orvandel {

/// Joins the last and the first segment of the closed contour whose segments end the array, where they differ
/// by less than `max_join_angle` and meet within `neighbour_offset` pixels: the last one is removed, the first
/// one overwritten. Its direction and length stay 0: such a segment proposes no pose of a finite scale. Arrays
/// of one or two segments are left alone.
///
/// @param segments  all segments so far, of all contours; not empty, its back belongs to the contour.
void JoinAcrossSeam(std::vector<LineSegment>& segments, const LineOptions& options);

}  // namespace orvandel
