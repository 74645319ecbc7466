#pragma once

#include <array>

#include "base/rounding.h"

namespace orvandel {

/// Credit of a match by its distance in pixels. The first entry stands for no search at all and is
/// never used: a match in the centre pixel earns 1.
inline constexpr std::array<double, 10> kDistanceCredit = {0.99, 0.98, 0.94, 0.9,  0.86,
                                                           0.8,  0.75, 0.7,  0.64, 0.6};
inline constexpr int kLargestRadius = static_cast<int>(kDistanceCredit.size()) - 1;

/// Which edges of a scene match an expected direction, and how far they are looked for.
struct MatchOptions {
  double angle_tolerance = kPi / 6;  ///< radians; directions that differ by it or more do not match
  bool ignore_polarity = false;      ///< opposite directions match too
  int radius = 5;                    ///< pixels along the edge normal, 0 to `kLargestRadius`

  friend bool operator==(const MatchOptions&, const MatchOptions&) = default;
};

}  // namespace orvandel
