// Directions in bins: coarse, but never narrower than the rule of matching.

#include "verify/orientation_mask.h"

#include <cmath>
#include <cstdint>
#include <string>

#include <gtest/gtest.h>

#include "tests/support/numbers.h"
#include "tests/support/uniform_random.h"
#include "verify/expected_direction.h"

namespace orvandel::test {
namespace {

/// The rule of matching as scores are defined by it.
bool ReferenceMatches(double expected, double stored, const MatchOptions& options) {
  double d = std::abs(expected - stored);
  while (d > kPi)
    d = 2 * kPi - d;
  return d < options.angle_tolerance ||
         (options.ignore_polarity && d > kPi - options.angle_tolerance);
}

/// Bins of an expected direction in [0, 2 pi]; at a bound either of two will do.
bool LiesInBin(double expected, int bin) {
  const DirectionRange range = RangeOfExpectedBin(bin);
  return range.first <= expected && expected <= range.last;
}

TEST(OrientationMask, TheExpectedDirectionLiesInOneOfItsBins) {
  UniformRandom random(1);
  for (int i = 0; i < 200000; ++i) {
    const double direction = random.Real(-2 * kPi, 4 * kPi);
    // Whole differences put the expected direction onto the bounds of quantised angles and bins.
    const double angle = random.OneIn(3) ? direction - random.Integer(-64, 64) * (2 * kPi / 32)
                                         : random.Real(-4 * kPi, 4 * kPi);
    const double expected = ExpectedDirection(direction, angle);
    const OrientationMask bins = ExpectedBins(Quantised(direction), Quantised(angle));
    bool found = false;
    for (int bin = 0; bin < kNumExpectedBins; ++bin)
      found = found || ((bins >> bin & 1u) != 0 && LiesInBin(expected, bin));
    ASSERT_TRUE(found) << "seed 1: direction " << direction << ", angle " << angle;
  }
}

TEST(OrientationMask, AnExpectedDirectionHasFewBins) {
  for (int direction = 0; direction < kNumQuantisedAngles; ++direction) {
    int num_bins = 0;
    for (OrientationMask bins = ExpectedBins(static_cast<QuantisedAngle>(direction), 77); bins != 0;
         bins &= bins - 1)
      ++num_bins;
    EXPECT_GE(num_bins, 1);
    EXPECT_LE(num_bins, 2);
  }
}

TEST(OrientationMask, WhatMatchesIsNeverRuledOut) {
  for (const bool ignore_polarity : {false, true}) {
    for (const double tolerance : {0.0, 0.1, kPi / 6, 1.5, 4.0}) {
      const MatchOptions options = {tolerance, ignore_polarity, 5};
      UniformRandom random(2);
      for (int i = 0; i < 40000; ++i) {
        const double expected =
            random.OneIn(8) ? 2 * kPi * random.Integer(0, 1) : random.Real(0, 2 * kPi);
        const double stored = random.OneIn(8) ? -kPi + random.Integer(0, 63) * (2 * kPi / 64)
                                              : random.Real(-kPi, kPi);
        if (!ReferenceMatches(expected, stored, options)) continue;
        for (int bin = 0; bin < kNumExpectedBins; ++bin) {
          if (!LiesInBin(expected, bin)) continue;
          ASSERT_TRUE(MayMatch(bin, StoredBinOf(stored), options))
              << "seed 2: expected " << expected << ", stored " << stored << ", tolerance "
              << tolerance << ", polarity " << ignore_polarity;
        }
      }
    }
  }
}

TEST(OrientationMask, WhatIsFarFromMatchingIsRuledOut) {
  // Default options: 30 degrees; bins of 11.25 and 5.6 degrees.
  const MatchOptions options;
  for (int bin = 0; bin < kNumExpectedBins; ++bin) {
    const double expected = (bin + 0.5) * (2 * kPi / kNumExpectedBins);
    for (double away = 0.7; away < kPi; away += 0.1) {
      const double stored = std::remainder(expected - away, 2 * kPi);
      if (ReferenceMatches(expected, stored, options)) continue;  // the fold of more than a turn
      EXPECT_FALSE(MayMatch(bin, StoredBinOf(stored), options)) << bin << ' ' << away;
    }
  }
}

TEST(OrientationMask, WhatIsNoDirectionMayMatchAnything) {
  const MatchOptions options;
  for (const double stored : {std::nan(""), kInfinity, -kInfinity, 3.2, -3.2, 100.0}) {
    for (int bin = 0; bin < kNumExpectedBins; ++bin)
      EXPECT_TRUE(MayMatch(bin, StoredBinOf(stored), options)) << stored;
  }
}

TEST(OrientationMask, OnlyModestAnglesCanBeQuantised) {
  for (const double radians : {0.0, -0.0, 7.0, -1e5, 1e5})
    EXPECT_TRUE(CanBeQuantised(radians));
  for (const double radians : {1.1e5, -1e300, kInfinity, std::nan("")})
    EXPECT_FALSE(CanBeQuantised(radians)) << radians;
}

}  // namespace
}  // namespace orvandel::test
