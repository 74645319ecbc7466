#pragma once

#include <cstdint>

#include "orvandel/classic/line_extracter.h"

namespace orvandel::plain {

/// As `CLineExtracter::MarkStraightPoints`, with the distance from the chord by trigonometry.
///
/// @param rules  gives `max_deviation` and `neighbour_offset`.
void MarkStraightPoints(const CLineExtracter& rules, const double* x, const double* y,
                        std::int32_t* f, int n, bool closed);

}  // namespace orvandel::plain
