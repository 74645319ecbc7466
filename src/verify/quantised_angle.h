#pragma once

#include <cmath>
#include <cstdint>

#include "base/rounding.h"

namespace orvandel {

/// A direction or rotation in 1024ths of a turn, rounded down, from 0 to 1023.
using QuantisedAngle = std::uint16_t;
inline constexpr int kNumQuantisedAngles = 1024;

/// Whether an angle is small enough: beyond 1e5 radians its own rounding would come near the margins that
/// tests with quantised angles leave.
inline bool CanBeQuantised(double radians) {
  constexpr double kLargest = 1e5;
  return std::abs(radians) <= kLargest;
}

inline QuantisedAngle Quantised(double radians) {
  const double turns = radians / kTwoPi;
  const double angle = (turns - std::floor(turns)) * kNumQuantisedAngles;
  return static_cast<QuantisedAngle>(static_cast<int>(angle) % kNumQuantisedAngles);
}

}  // namespace orvandel
