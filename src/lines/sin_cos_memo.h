#pragma once

#include <array>
#include <cstddef>
#include <cstdint>

#include "base/trigonometry.h"

namespace orvandel {

/// Sines and cosines of angles that keep coming back. Edge directions
/// are such angles: a detector gives 256 of them, and the means of two add the halves between.
class SinCosMemo {
 public:
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
