#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "base/trigonometry.h"

namespace orvandel {

/// Sines and cosines of angles that keep coming back, bit for bit those of `SinCosOf`. Gradient directions
/// are such angles: the detector gives 256 of them, and the means of two add the halves between.
class SinCosCache {
 public:
  /// @param angle  radians.
  SinCos Of(double angle);

 private:
  /// An unused entry answers for 0, rightly.
  struct Entry {
    std::uint64_t angle_bits = 0;
    SinCos value;
  };
  static constexpr int kLogSize = 10;
  std::array<Entry, std::size_t{1} << kLogSize> entries_;
};

}  // namespace orvandel
