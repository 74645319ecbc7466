#pragma once

#include "platform/grey_rows.h"

namespace orvandel {

/// A proposal for the edge threshold of an image, from the histogram of its gradient magnitudes.
///
/// @return  1 to 255; 10 where the histogram gives none: of a flat or tiny image, and of most others too.
///          Also 10 when memory is short.
int ProposeEdgeThreshold(const GreyRows& image);

}  // namespace orvandel
