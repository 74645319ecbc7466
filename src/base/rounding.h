#pragma once

#include <cstdint>
#include <limits>

namespace orvandel {

inline constexpr double kPi = 3.14159265358979323846;
inline constexpr double kTwoPi = 2.0 * kPi;

/// Truncates toward zero, as pixel indices are made from positions. A value that is not a number or
/// lies outside the 32-bit range becomes the smallest 32-bit integer, which no image has as a
/// column or row.
inline std::int32_t TruncateToInt32(double value) {
  const bool fits = value > -2147483649.0 && value < 2147483648.0;  // false for not-a-number
  return fits ? static_cast<std::int32_t>(value) : std::numeric_limits<std::int32_t>::min();
}

}  // namespace orvandel
