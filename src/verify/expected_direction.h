#pragma once

#include <array>
#include <cmath>
#include <cstddef>
#include <cstdint>

#include "base/rounding.h"
#include "base/trigonometry.h"
#include "verify/match_options.h"

namespace orvandel {

/// Directions further out than this are not directions; turning them back would take for ever.
inline constexpr double kLargestDirection = 1e6;

/// The direction in [0, 2 pi] that a scene edge should have where the pattern's is `direction`. Rows run
/// downwards while directions turn upwards, hence the minus. Negative where there is no such direction.
inline double ExpectedDirection(double direction, double angle) {
  double expected = direction - angle;
  if (!(std::abs(expected) <= kLargestDirection)) return -1.0;
  while (expected > kTwoPi)
    expected -= kTwoPi;
  while (expected < 0)
    expected += kTwoPi;
  return expected;
}

/// Whole-pixel steps along the normal of an edge, by distance in pixels from 1 to the radius.
struct NormalSteps {
  NormalSteps() = default;
  NormalSteps(double expected, int radius) {
    const auto [s, c] = SinCosOf(expected);
    for (int k = 1; k <= radius; ++k) {
      // Truncated after half is added: negative steps come out shorter than rounded ones.
      rows[static_cast<std::size_t>(k)] = static_cast<std::int16_t>(k * s + 0.5);
      columns[static_cast<std::size_t>(k)] = static_cast<std::int16_t>(k * c + 0.5);
    }
  }

  std::array<std::int16_t, kLargestRadius + 1> rows{};
  std::array<std::int16_t, kLargestRadius + 1> columns{};
};

}  // namespace orvandel
