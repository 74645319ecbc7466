#pragma once

#include <algorithm>
#include <array>
#include <cstdint>

#include "base/rounding.h"
#include "verify/match_options.h"
#include "verify/quantised_angle.h"

namespace orvandel {

/// A set of expected directions, a bit for each 32nd of a turn from 0 on.
using OrientationMask = std::uint32_t;
inline constexpr int kNumExpectedBins = 32;

/// Where a direction may lie that is the difference of two, by the difference of their quantised angles. Both
/// are rounded down, so it lies within one of them of that.
inline constexpr std::array<OrientationMask, kNumQuantisedAngles> kExpectedBins = [] {
  constexpr int kAnglesPerBin = kNumQuantisedAngles / kNumExpectedBins;
  std::array<OrientationMask, kNumQuantisedAngles> masks{};
  for (int difference = 0; difference < kNumQuantisedAngles; ++difference) {
    // The angles next to these are for rounding.
    for (int angle = difference - 2; angle <= difference + 1; ++angle) {
      const int bin = (angle + kNumQuantisedAngles) % kNumQuantisedAngles / kAnglesPerBin;
      masks[static_cast<std::size_t>(difference)] |= OrientationMask{1} << bin;
    }
  }
  return masks;
}();

/// Where the direction that is expected of a pattern direction under a rotation may lie.
inline OrientationMask ExpectedBins(QuantisedAngle direction, QuantisedAngle rotation) {
  return kExpectedBins[static_cast<unsigned>(direction - rotation) % kNumQuantisedAngles];
}

/// Stored gradient directions in 64ths of a turn from -pi on; one further bin for what is no direction or
/// lies outside [-pi, pi], which may match anything.
inline constexpr int kNumStoredBins = 65;
inline int StoredBinOf(double stored) {
  constexpr int kNone = kNumStoredBins - 1;
  if (!(stored >= -kPi && stored <= kPi)) return kNone;
  constexpr double kBinsPerRadian = kNone / kTwoPi;
  return std::min(static_cast<int>((stored + kPi) * kBinsPerRadian), kNone - 1);
}

/// Whether some expected direction of one bin may match some stored direction of the other.
bool MayMatch(int expected_bin, int stored_bin, const MatchOptions& options);

/// Both ends of an expected bin, radians, with a margin that covers all rounding.
struct DirectionRange {
  double first;
  double last;
};
DirectionRange RangeOfExpectedBin(int bin);

}  // namespace orvandel
