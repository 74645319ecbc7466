#pragma once

#include <vector>

#include "orvandel/classic/line_extracter.h"

namespace orvandel::plain {

/// As `CLineExtracter::Extract`.
///
/// @param rules     gives the limits; its own segments are neither read nor changed.
/// @param contours  a `ctd_` handle. Its flags are overwritten.
std::vector<CLineSegment> ExtractSegments(const CLineExtracter& rules, void* contours);

}  // namespace orvandel::plain
