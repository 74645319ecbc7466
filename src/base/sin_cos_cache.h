#pragma once

#include "base/double_cache.h"
#include "base/trigonometry.h"

namespace orvandel {

/// Sines and cosines of angles that keep coming back, bit for bit those of `SinCosOf`. Gradient directions
/// are such angles: the detector gives 256 of them, and the means of two add the halves between.
class SinCosCache {
 public:
  /// @param angle  radians.
  SinCos Of(double angle) { return cache_.Of(angle, SinCosOf); }

 private:
  DoubleCache<SinCos, 10> cache_;
};

}  // namespace orvandel
