#pragma once

#include <algorithm>
#include <array>
#include <cstdint>

#include "verify/probing.h"

namespace orvandel {

/// A set of expected directions, a bit for each 32nd of a turn from 0 on.
using DirectionSet = std::uint32_t;
inline constexpr int kNumExpectedBins = 32;

/// A direction or rotation in 1024ths of a turn, rounded down, from 0 to 1023.
using TurnCode = std::uint16_t;
inline constexpr int kNumTurnCodes = 1024;

/// Whether a number is small enough to be coded.
bool HasTurnCode(double radians);
TurnCode TurnCodeOf(double radians);

/// Where a direction may lie that is the difference of two, by the difference of their codes. Both are
/// rounded down, so it lies within a code of that.
inline constexpr std::array<DirectionSet, kNumTurnCodes> kExpectedBins = [] {
  constexpr int kCodesPerBin = kNumTurnCodes / kNumExpectedBins;
  std::array<DirectionSet, kNumTurnCodes> sets{};
  for (int difference = 0; difference < kNumTurnCodes; ++difference) {
    // The codes next to these are for rounding.
    for (int code = difference - 2; code <= difference + 1; ++code) {
      const int bin = (code + kNumTurnCodes) % kNumTurnCodes / kCodesPerBin;
      sets[static_cast<std::size_t>(difference)] |= DirectionSet{1} << bin;
    }
  }
  return sets;
}();

/// Where the direction that is expected of a pattern direction under a rotation may lie.
inline DirectionSet ExpectedBins(TurnCode direction, TurnCode rotation) {
  return kExpectedBins[static_cast<unsigned>(direction - rotation) % kNumTurnCodes];
}

/// Stored edge directions in 64ths of a turn from -pi on; one further bin for what is no direction or lies
/// outside [-pi, pi], which may match anything.
inline constexpr int kNumStoredBins = 65;
inline int StoredBinOf(double stored) {
  constexpr int kNone = kNumStoredBins - 1;
  if (!(stored >= -kPi && stored <= kPi)) return kNone;
  constexpr double kBinsPerRadian = kNone / kTwoPi;
  return std::min(static_cast<int>((stored + kPi) * kBinsPerRadian), kNone - 1);
}

/// Whether some expected direction of one bin may match some stored direction of the other.
bool MayMatch(int expected_bin, int stored_bin, const ProbeRules& rules);

/// Both ends of an expected bin, radians, with a margin that covers all rounding.
struct DirectionRange {
  double first;
  double last;
};
DirectionRange RangeOfExpectedBin(int bin);

}  // namespace orvandel
