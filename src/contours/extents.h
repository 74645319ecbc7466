#pragma once

#include <cstddef>
#include <optional>
#include <span>

#include "base/geometry.h"
#include "contours/contour_set.h"

namespace orvandel {

/// Mean position of all points; not a number when there are none.
Point Centroid(const ContourSetView& contours);

/// An extreme of some values, and the index of the first that has it.
struct Extreme {
  double value;
  std::optional<std::size_t> index;
};

/// -999999999 without an index when no value is larger.
Extreme LargestOf(std::span<const double> values);

/// 999999999 without an index when no value is smaller.
Extreme SmallestOf(std::span<const double> values);

}  // namespace orvandel
