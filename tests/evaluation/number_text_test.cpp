#include "evaluation/number_text.h"

#include <limits>

#include <gtest/gtest.h>

namespace orvandel::evaluation::test {
namespace {

TEST(NumberText, NumbersAreReadWithADecimalPoint) {
  EXPECT_EQ(ParseNumber("1.5"), 1.5);
  EXPECT_EQ(ParseNumber("-.25"), -0.25);
  EXPECT_EQ(ParseNumber("2e3"), 2000.0);
}

TEST(NumberText, OtherTextIsNoNumber) {
  for (const char* text : {"", " ", "1,5", "1.5x", " 1", "1 ", "nan", "inf", "0x10", "1e999", "-"})
    EXPECT_FALSE(ParseNumber(text)) << "'" << text << "'";
}

TEST(NumberText, IntegersAreWhole) {
  EXPECT_EQ(ParseInteger("42"), 42);
  EXPECT_EQ(ParseInteger("-7"), -7);
  for (const char* text : {"", "4.0", "4x", " 4", "99999999999"})
    EXPECT_FALSE(ParseInteger(text)) << "'" << text << "'";
}

TEST(NumberText, FixedRounds) {
  EXPECT_EQ(Fixed(2.346, 2), "2.35");
  EXPECT_EQ(Fixed(-12.0, 1), "-12.0");
  EXPECT_EQ(Fixed(7.4, 0), "7");
}

TEST(NumberText, FixedHasNoNegativeZero) {
  EXPECT_EQ(Fixed(-0.0, 2), "0.00");
  EXPECT_EQ(Fixed(-0.004, 2), "0.00");
  EXPECT_EQ(Fixed(-0.006, 2), "-0.01");
}

TEST(NumberText, FixedMarksWhatIsNotFinite) {
  EXPECT_EQ(Fixed(std::numeric_limits<double>::quiet_NaN(), 2), "-");
  EXPECT_EQ(Fixed(std::numeric_limits<double>::infinity(), 2, ""), "");
}

}  // namespace
}  // namespace orvandel::evaluation::test
