#include "evaluation/statistics.h"

#include <cmath>

#include <gtest/gtest.h>

namespace orvandel::evaluation::test {
namespace {

TEST(Percentile, OfNothingIsNotANumber) {
  EXPECT_TRUE(std::isnan(Percentile({}, 50)));
}

TEST(Percentile, OfOneValueIsThatValue) {
  EXPECT_EQ(Percentile({3.5}, 0), 3.5);
  EXPECT_EQ(Percentile({3.5}, 90), 3.5);
  EXPECT_EQ(Percentile({3.5}, 100), 3.5);
}

TEST(Percentile, TheMedianIsTheMiddleValueOrTheMeanOfTheTwo) {
  EXPECT_EQ(Percentile({9, 1, 5}, 50), 5);
  EXPECT_EQ(Percentile({9, 1, 5, 7}, 50), 6);
  EXPECT_EQ(Median({9, 1, 5, 7}), 6);
}

TEST(Percentile, RanksAreInterpolated) {
  // Ranks 0 to 10 stand for 0 to 100 percent, so 90 percent is rank 9 and 95 halfway to rank 10.
  const std::vector<double> values = {0, 1, 2, 3, 4, 5, 6, 7, 8, 9, 20};
  EXPECT_DOUBLE_EQ(Percentile(values, 90), 9);
  EXPECT_DOUBLE_EQ(Percentile(values, 95), 14.5);
  EXPECT_DOUBLE_EQ(Percentile(values, 100), 20);
}

}  // namespace
}  // namespace orvandel::evaluation::test
