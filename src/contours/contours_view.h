#pragma once

#include <span>

#include "orvandel/classic/crawler.h"

namespace orvandel {

/// The contours of a set, to be read: records that cut parallel arrays of points into contours. It lasts
/// as long as the set's arrays.
struct ContoursView {
  std::span<const ContourRecord> records;
  const double* x = nullptr;  ///< pixels
  const double* y = nullptr;  ///< pixels, downwards
  const double* g = nullptr;  ///< gradient direction, radians
};

/// No contours where the set has no arrays, whatever its counts say.
ContoursView ViewOf(const CCrawler& set);

}  // namespace orvandel
