#include "verify/direction_sets.h"

#include <cmath>

namespace orvandel {
namespace {

constexpr double kExpectedWidth = kTwoPi / kNumExpectedBins;
constexpr int kNumDirectionBins = kNumStoredBins - 1;
constexpr double kStoredWidth = kTwoPi / kNumDirectionBins;

/// Rounding anywhere between a direction and its bin or code is far below this.
constexpr double kMargin = 1e-6;

/// Beyond it the codes' rounding would come near the margin.
constexpr double kLargestCoded = 1e5;

/// Smaller angle between two directions, in [0, pi].
double AngleBetween(double a, double b) {
  return std::abs(std::remainder(a - b, kTwoPi));
}

}  // namespace

bool HasTurnCode(double radians) {
  return std::abs(radians) <= kLargestCoded;
}

TurnCode TurnCodeOf(double radians) {
  const double turns = radians / kTwoPi;
  const double code = (turns - std::floor(turns)) * kNumTurnCodes;
  return static_cast<TurnCode>(static_cast<int>(code) % kNumTurnCodes);
}

bool MayMatch(int expected_bin, int stored_bin, const ProbeRules& rules) {
  if (stored_bin == kNumDirectionBins) return true;
  const double expected = (expected_bin + 0.5) * kExpectedWidth;
  const double stored = -kPi + (stored_bin + 0.5) * kStoredWidth;
  const double middle = AngleBetween(expected, stored);
  const double reach = 0.5 * (kExpectedWidth + kStoredWidth) + 3 * kMargin;
  if (!(middle - reach > rules.tolerance)) return true;
  if (rules.ignore_polarity && middle + reach >= kPi - rules.tolerance) return true;
  // Differences beyond a full turn are folded once and come out negative, which always matches.
  return expected - stored + reach >= kTwoPi;
}

DirectionRange RangeOfExpectedBin(int bin) {
  return {bin * kExpectedWidth - kMargin, (bin + 1) * kExpectedWidth + kMargin};
}

}  // namespace orvandel
