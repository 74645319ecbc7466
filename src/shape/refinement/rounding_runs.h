#pragma once

#include <cstdint>
#include <vector>

#include "shape/refinement/float_image.h"

namespace orvandel::shape {

/// Pixels of an image without noise that share one rounding error: runs of equal values along a row or
/// a column, as an axis-parallel edge makes them. Entry i is the first pixel of pixel i's run, i itself
/// where it is alone.
std::vector<std::int32_t> FindRoundingRuns(const FloatImage& image);

}  // namespace orvandel::shape
