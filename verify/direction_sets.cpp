#include "verify/direction_sets.h"

#include <algorithm>
#include <cmath>

namespace orvandel {
namespace {

constexpr int kNumBins = 16;
constexpr double kBinWidth = kTwoPi / kNumBins;
constexpr double kCodeWidth = kTwoPi / 256;

/// Rounding anywhere between a direction and its bin or code is far below this.
constexpr double kMargin = 1e-6;

/// Beyond it the codes' rounding would come near the margin.
constexpr double kLargestCoded = 1e5;

/// Directions within `reach` of a centre.
struct Arc {
  double centre;
  double reach;
};

/// Smaller angle between two directions, in [0, pi].
double AngleBetween(double a, double b) {
  return std::abs(std::remainder(a - b, kTwoPi));
}

/// Whether some expected direction of one arc may match some stored direction of the other.
bool MayMatch(const Arc& expected, const Arc& stored, const ProbeRules& rules) {
  const double middle = AngleBetween(expected.centre, stored.centre);
  const double reach = expected.reach + stored.reach + kMargin;
  if (middle - reach <= rules.tolerance) return true;
  if (rules.ignore_polarity && middle + reach >= kPi - rules.tolerance) return true;
  // Differences beyond a full turn are folded once and come out negative, which always matches.
  const bool wraps = expected.centre < expected.reach;
  const double largest_expected =
      wraps ? kTwoPi : std::min(expected.centre + expected.reach, kTwoPi);
  return largest_expected - (stored.centre - stored.reach) >= kTwoPi - kMargin;
}

}  // namespace

DirectionSet SetOfDirection(double stored) {
  if (!(stored >= -kPi && stored <= kPi)) return 0xFFFF;
  const int bin = std::min(static_cast<int>((stored + kPi) / kBinWidth), kNumBins - 1);
  return static_cast<DirectionSet>(1u << bin);
}

bool HasTurnCode(double radians) {
  return std::abs(radians) <= kLargestCoded;
}

TurnCode TurnCodeOf(double radians) {
  const double turns = radians / kTwoPi;
  const double code = (turns - std::floor(turns)) * 256;
  return static_cast<TurnCode>(static_cast<int>(code));  // a whole turn wraps to 0
}

MatchingDirections::MatchingDirections(const ProbeRules& rules) {
  for (std::size_t difference = 0; difference < sets_.size(); ++difference) {
    const Arc expected = {static_cast<double>(difference) * kCodeWidth, kCodeWidth + kMargin};
    unsigned set = 0;
    for (int bin = 0; bin < kNumBins; ++bin) {
      const Arc stored = {-kPi + (bin + 0.5) * kBinWidth, 0.5 * kBinWidth + kMargin};
      if (MayMatch(expected, stored, rules)) set |= 1u << bin;
    }
    sets_[difference] = static_cast<DirectionSet>(set);
  }
}

}  // namespace orvandel
