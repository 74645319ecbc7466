#pragma once

#include <vector>

#include "contours/contour_tracing.h"

namespace orvandel::test {

/// One of the arrays of traced points, with all points in it.
inline std::vector<double> ValuesOf(const HeapArray<double>& array,
                                    const TracedContours& contours) {
  return {array.get(), array.get() + contours.num_points};
}

}  // namespace orvandel::test
