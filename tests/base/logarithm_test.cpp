#include "base/logarithm.h"

#include <cmath>

#include <gtest/gtest.h>

namespace orvandel {
namespace {

TEST(Logarithm, AgreesWithTheLibrarysToAFewLastBits) {
  for (double value = 1e-300; value < 1e300; value *= 1.37) {
    const double expected = std::log(value);
    EXPECT_NEAR(NaturalLogarithm(value), expected, 1e-14 * std::abs(expected) + 1e-15) << value;
  }
  for (int i = -40; i <= 40; ++i) {
    const double value = 1.0 + 0.01 * i;
    EXPECT_NEAR(NaturalLogarithm(value), std::log(value), 1e-15) << value;
  }
}

TEST(Logarithm, OfNothingIsTheSmallest) {
  EXPECT_EQ(NaturalLogarithm(0.0), -745.0);
  EXPECT_EQ(NaturalLogarithm(-3.0), -745.0);
  EXPECT_EQ(NaturalLogarithm(std::nan("")), -745.0);
}

TEST(Exponential, AgreesWithTheLibrarysToAFewLastBits) {
  for (double exponent = -690.0; exponent < 690.0; exponent += 0.731) {
    const double expected = std::exp(exponent);
    EXPECT_NEAR(ExponentialOf(exponent) / expected, 1.0, 2e-13) << exponent;
  }
  EXPECT_EQ(ExponentialOf(0.0), 1.0);
}

TEST(Exponential, UndoesTheLogarithm) {
  for (double value = 0.001; value < 1000.0; value *= 1.7)
    EXPECT_NEAR(ExponentialOf(NaturalLogarithm(value)) / value, 1.0, 1e-14);
}

}  // namespace
}  // namespace orvandel
