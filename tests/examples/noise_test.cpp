#include "examples/render/noise.h"

#include <cmath>
#include <cstdint>
#include <vector>

#include <gtest/gtest.h>

namespace orvandel::render {
namespace {

constexpr int kDraws = 200000;

TEST(RandomSource, GivesTheSequenceThatIsPublishedForSplitMix64) {
  RandomSource random(1234567);
  for (const std::uint64_t expected :
       {6457827717110365317u, 3203168211198807973u, 9817491932198370423u, 4593380528125082431u,
        16408922859458223821u})
    EXPECT_EQ(random.Bits(), expected);
}

TEST(RandomSource, UniformFillsItsIntervalEvenly) {
  RandomSource random(/*seed=*/3);
  std::vector<int> tenths(10, 0);
  for (int i = 0; i < kDraws; ++i) {
    const double value = random.Uniform(-2, 3);
    ASSERT_GE(value, -2);
    ASSERT_LT(value, 3);
    ++tenths[static_cast<std::size_t>((value + 2) * 2)];
  }
  // A tenth's count has a deviation of sqrt(n * 0.1 * 0.9) = 134; five of them.
  for (const int count : tenths)
    EXPECT_NEAR(count, kDraws / 10, 670);
}

TEST(RandomSource, NearlyNormalHasMean0AndDeviation1) {
  RandomSource random(/*seed=*/4);
  double sum = 0;
  double sum_of_squares = 0;
  int within_one = 0;
  for (int i = 0; i < kDraws; ++i) {
    const double value = random.NearlyNormal();
    ASSERT_LE(std::abs(value), 6);
    sum += value;
    sum_of_squares += value * value;
    within_one += std::abs(value) < 1 ? 1 : 0;
  }
  const double mean = sum / kDraws;
  EXPECT_NEAR(mean, 0, 5 / std::sqrt(kDraws));  // five deviations of the mean
  EXPECT_NEAR(std::sqrt(sum_of_squares / kDraws - mean * mean), 1, 5 / std::sqrt(2.0 * kDraws));
  EXPECT_NEAR(within_one / static_cast<double>(kDraws), 0.6827, 0.01);  // as of a normal deviate
}

}  // namespace
}  // namespace orvandel::render
