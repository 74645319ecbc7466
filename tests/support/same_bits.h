#pragma once

#include <cmath>
#include <cstdint>
#include <cstring>
#include <ios>

#include <gtest/gtest.h>

namespace orvandel::test {

inline std::uint64_t BitsOf(double value) {
  std::uint64_t bits = 0;
  std::memcpy(&bits, &value, sizeof bits);
  return bits;
}

/// Whether two doubles are the same bit for bit, so that 0.0 differs from -0.0. Every not-a-number
/// counts as the same one: its sign and payload are left to the processor.
inline bool AreSameBits(double a, double b) {
  return BitsOf(a) == BitsOf(b) || (std::isnan(a) && std::isnan(b));
}

/// As `AreSameBits`, for EXPECT_TRUE.
inline ::testing::AssertionResult SameBits(double actual, double expected) {
  if (AreSameBits(actual, expected)) return ::testing::AssertionSuccess();
  return ::testing::AssertionFailure()
         << std::hexfloat << "actual " << actual << ", expected " << expected << std::defaultfloat
         << " (" << actual << ", " << expected << ")";
}

}  // namespace orvandel::test
