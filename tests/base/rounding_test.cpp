#include "base/rounding.h"

#include <cmath>
#include <cstdint>
#include <limits>

#include <gtest/gtest.h>

namespace orvandel::test {
namespace {

constexpr std::int32_t kSmallest = std::numeric_limits<std::int32_t>::min();
constexpr std::int32_t kLargest = std::numeric_limits<std::int32_t>::max();

TEST(TruncateToInt32, GoesTowardZero) {
  EXPECT_EQ(TruncateToInt32(0.0), 0);
  EXPECT_EQ(TruncateToInt32(-0.0), 0);
  EXPECT_EQ(TruncateToInt32(0.999999), 0);
  EXPECT_EQ(TruncateToInt32(-0.999999), 0);
  EXPECT_EQ(TruncateToInt32(7.5), 7);
  EXPECT_EQ(TruncateToInt32(-7.5), -7);
}

TEST(TruncateToInt32, ReachesBothEndsOfTheRange) {
  EXPECT_EQ(TruncateToInt32(2147483647.0), kLargest);
  EXPECT_EQ(TruncateToInt32(2147483647.999), kLargest);
  EXPECT_EQ(TruncateToInt32(-2147483647.5), kSmallest + 1);
  EXPECT_EQ(TruncateToInt32(-2147483648.0), kSmallest);
  EXPECT_EQ(TruncateToInt32(-2147483648.999), kSmallest);
}

TEST(TruncateToInt32, OutsideTheRangeIsTheSmallest) {
  constexpr double kInfinity = std::numeric_limits<double>::infinity();
  for (const double value : {2147483648.0, 1e10, 1e300, kInfinity, -2147483649.0, -1e10, -1e300,
                             -kInfinity, std::nan("")})
    EXPECT_EQ(TruncateToInt32(value), kSmallest) << value;
}

TEST(Pi, IsTheDoubleNearestToIt) {
  EXPECT_EQ(kPi, std::acos(-1.0));
  EXPECT_EQ(kTwoPi, kPi + kPi);
}

}  // namespace
}  // namespace orvandel::test
