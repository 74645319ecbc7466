#include "verify/orientation_mask.h"

#include <cmath>

namespace orvandel {
namespace {

constexpr double kExpectedWidth = kTwoPi / kNumExpectedBins;
constexpr int kNumDirectionBins = kNumStoredBins - 1;
constexpr double kStoredWidth = kTwoPi / kNumDirectionBins;

/// Rounding anywhere between a direction and its bin or quantised angle is far below this.
constexpr double kMaskMargin = 1e-6;

/// Smaller angle between two directions, in [0, pi].
double AngleBetween(double a, double b) {
  return std::abs(std::remainder(a - b, kTwoPi));
}

}  // namespace

bool MayMatch(int expected_bin, int stored_bin, const MatchOptions& options) {
  if (stored_bin == kNumDirectionBins) return true;
  const double expected = (expected_bin + 0.5) * kExpectedWidth;
  const double stored = -kPi + (stored_bin + 0.5) * kStoredWidth;
  const double middle = AngleBetween(expected, stored);
  const double reach = 0.5 * (kExpectedWidth + kStoredWidth) + 3 * kMaskMargin;
  if (!(middle - reach > options.angle_tolerance)) return true;
  if (options.ignore_polarity && middle + reach >= kPi - options.angle_tolerance) return true;
  // Differences beyond a full turn are folded once and come out negative, which always matches.
  return expected - stored + reach >= kTwoPi;
}

DirectionRange RangeOfExpectedBin(int bin) {
  return {bin * kExpectedWidth - kMaskMargin, (bin + 1) * kExpectedWidth + kMaskMargin};
}

}  // namespace orvandel
