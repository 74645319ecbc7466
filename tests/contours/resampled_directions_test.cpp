#include <cmath>
#include <cstdint>
#include <limits>
#include <vector>

#include <gtest/gtest.h>

#include "base/rounding.h"
#include "orvandel/classic/ctd.h"
#include "tests/support/contour_sets.h"

// Directions and flags of resampled points.
namespace orvandel::test {
namespace {

/// The direction of the one interpolated point of three, halfway between those of the last two.
double MeanDirection(double a, double b) {
  TestContour contour;
  contour.points = {{0, 0, 99, 0}, {1, 0, a, 0}, {2, 0, b, 0}};
  const ContourHandle set = MakeSet({contour});
  ctd_resample(set.get());
  EXPECT_EQ(ctd_contour_size(set.get(), 0), 3);
  return ctd_contour_g(set.get(), 0, 1);
}

TEST(ResampledDirections, AreHalfwayBetweenTargetAndNextPoint) {
  EXPECT_EQ(MeanDirection(0.5, 1.0), 0.75);
  EXPECT_EQ(MeanDirection(1.0, 0.5), 0.75);
  EXPECT_EQ(MeanDirection(3.0, 3.0), 3.0);
}

TEST(ResampledDirections, StraddlingZeroStayNearIt) {
  EXPECT_NEAR(MeanDirection(6.2, 0.1), (6.2 + 0.1 - kTwoPi) / 2, 1e-14);  // 0.0084
  EXPECT_NEAR(MeanDirection(0.1, 6.2), (6.2 + 0.1 - kTwoPi) / 2, 1e-14);
  EXPECT_NEAR(MeanDirection(6.2, 0.0), (6.2 + kTwoPi) / 2, 1e-14);           // 6.24
  EXPECT_NEAR(MeanDirection(-3.1, 3.1), kPi, 1e-14);                         // not 0
  EXPECT_NEAR(MeanDirection(-3.1, 3.0), (3.0 + (kTwoPi - 3.1)) / 2, 1e-14);  // 3.09
}

TEST(ResampledDirections, ExactlyOppositeOnesMeetHalfway) {
  EXPECT_EQ(MeanDirection(0, kPi), kPi / 2);
  EXPECT_EQ(MeanDirection(kPi, 0), kPi / 2);
}

TEST(ResampledDirections, AreBroughtIntoOneTurn) {
  EXPECT_EQ(MeanDirection(-0.5, -0.5), kTwoPi - 0.5);
  EXPECT_NEAR(MeanDirection(20, 20), 20 - 3 * kTwoPi, 1e-13);
  EXPECT_NEAR(MeanDirection(-20, -20), 4 * kTwoPi - 20, 1e-13);
  EXPECT_EQ(MeanDirection(kTwoPi, kTwoPi), kTwoPi);  // a whole turn stays one
  EXPECT_EQ(MeanDirection(0, 0), 0);
}

TEST(ResampledDirections, LargeOnesWrapByWholeTurns) {
  const double g = MeanDirection(999000.5, 999000.5);
  EXPECT_GE(g, 0);
  EXPECT_LE(g, kTwoPi);
  // 158996 subtractions, each rounding by at most 2^-34 (half an ulp of a million).
  EXPECT_NEAR(std::cos(g), std::cos(999000.5), 158996 * std::ldexp(1, -34));
}

TEST(ResampledDirections, WithoutMeaningBecomeZero) {
  const double inf = std::numeric_limits<double>::infinity();
  EXPECT_EQ(MeanDirection(std::nan(""), 1), 0);
  EXPECT_EQ(MeanDirection(1, std::nan("")), 0);
  EXPECT_EQ(MeanDirection(inf, inf), 0);
  EXPECT_EQ(MeanDirection(-inf, inf), 0);
  EXPECT_EQ(MeanDirection(-inf, 1), 0);
  EXPECT_EQ(MeanDirection(1e7, 1e7), 0);
  EXPECT_EQ(MeanDirection(-1e7, -1e7), 0);
  EXPECT_EQ(MeanDirection(1e300, 1e300), 0);
}

TEST(ResampledDirections, TheEndsKeepTheirOwn) {
  TestContour contour;
  contour.points = {{0, 0, -3, 0}, {1, 0, 1, 0}, {2, 0, 1, 0}, {3, 0, -2, 0}};
  const ContourHandle set = MakeSet({contour});
  ctd_resample(set.get());
  ASSERT_EQ(ctd_contour_size(set.get(), 0), 4);
  EXPECT_EQ(ctd_contour_g(set.get(), 0, 0), -3);
  EXPECT_EQ(ctd_contour_g(set.get(), 0, 3), -2);
}

TEST(ResampledDirections, APassedOverPointDoesNotCount) {
  // From (0, 0) the point at 0.25 is passed over: target 1.5, mean of its direction and the next.
  TestContour contour;
  contour.points = {{0, 0, 0, 0}, {0.25, 0, 3, 0}, {1.5, 0, 1, 0}, {9, 0, 2, 0}};
  const ContourHandle set = MakeSet({contour});
  ctd_resample(set.get());
  ASSERT_EQ(ctd_contour_size(set.get(), 0), 3);
  EXPECT_EQ(ctd_contour_g(set.get(), 0, 1), 1.5);
}

std::vector<std::uint32_t> ResampledFlags(const std::vector<TestPoint>& points) {
  const ContourHandle set = MakeSet({TestContour{points, false}});
  ctd_resample(set.get());
  const std::uint32_t* f = Fields(set).f;
  return {f, f + ctd_point_count(set.get())};
}

using Flags = std::vector<std::uint32_t>;

TEST(ResampledFlags, AreSetWhereTheTargetOrThePointBeforeItIs) {
  EXPECT_EQ(ResampledFlags({{0, 0, 0, 0}, {1, 0, 0, 1}, {2, 0, 0, 0}, {3, 0, 0, 0}, {4, 0, 0, 0}}),
            (Flags{0, 1, 1, 0, 0}));
  EXPECT_EQ(ResampledFlags({{0, 0, 0, 1}, {1, 0, 0, 0}, {2, 0, 0, 0}, {3, 0, 0, 1}, {4, 0, 0, 0}}),
            (Flags{1, 1, 0, 1, 0}));
}

TEST(ResampledFlags, InBetweenAreOneWhateverTheirValueAndAtTheEndsTheyStay) {
  EXPECT_EQ(ResampledFlags({{0, 0, 0, 7}, {1, 0, 0, 5}, {2, 0, 0, 0x80000000u}, {3, 0, 0, 9}}),
            (Flags{7, 1, 1, 9}));
}

TEST(ResampledFlags, OfAllPointsOfAPieceAreTheSame) {
  EXPECT_EQ(ResampledFlags({{0, 0, 0, 0}, {4, 0, 0, 3}, {9, 0, 0, 0}}), (Flags{0, 1, 1, 1, 0}));
}

TEST(ResampledFlags, ThePointBeforeTheTargetMayBeOneThatWasPassedOver) {
  // Target 1.5 after passing over 0.25, whose flag is set.
  EXPECT_EQ(ResampledFlags({{0, 0, 0, 0}, {0.25, 0, 0, 2}, {1.5, 0, 0, 0}, {9, 0, 0, 0}}),
            (Flags{0, 1, 0}));
  EXPECT_EQ(ResampledFlags({{0, 0, 0, 2}, {0.25, 0, 0, 0}, {1.5, 0, 0, 0}, {9, 0, 0, 0}}),
            (Flags{2, 0, 0}));
}

}  // namespace
}  // namespace orvandel::test
