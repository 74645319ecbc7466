#pragma once

#include <limits>
#include <numbers>

namespace orvandel::test {

inline constexpr double kPi = std::numbers::pi;
inline constexpr double kDegree = kPi / 180;
inline constexpr double kInfinity = std::numeric_limits<double>::infinity();

}  // namespace orvandel::test
