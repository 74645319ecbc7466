#pragma once

#include <vector>

#include "orvandel/classic/line_segment.h"

namespace orvandel {

/// When two pieces of a closed contour continue each other across its seam.
struct JoinLimits {
  double max_angle;  ///< radians; line angles that differ by it or more are not joined
  double max_gap;    ///< pixels; nor pieces that lie this far apart
};

/// Joins the last and the first segment of the closed contour whose segments end the array: the last
/// one is removed, the first one overwritten. Its direction and length stay 0: such a segment proposes
/// no pose of a finite scale. Arrays of one or two segments are left alone.
///
/// @param segments  all segments so far, of all contours; not empty, its back belongs to the contour.
void JoinAcrossSeam(std::vector<CLineSegment>& segments, const JoinLimits& limits);

}  // namespace orvandel
