#include "base/sin_cos_cache.h"

#include <cmath>
#include <limits>
#include <numbers>

#include <gtest/gtest.h>

#include "base/trigonometry.h"
#include "tests/support/same_bits.h"
#include "tests/support/uniform_random.h"

namespace orvandel::test {
namespace {

void ExpectSame(SinCosCache& cache, double angle) {
  const SinCos value = cache.Of(angle);
  EXPECT_TRUE(SameBits(value.sine, Sin(angle))) << angle;
  EXPECT_TRUE(SameBits(value.cosine, Cos(angle))) << angle;
}

TEST(SinCosCache, TellsZerosApart) {
  SinCosCache cache;
  for (const double angle : {0.0, -0.0, 0.0, -0.0})
    ExpectSame(cache, angle);
}

TEST(SinCosCache, GivesTheLibrarysBitsWhenAnglesComeBackAndWhenTheyCollide) {
  SinCosCache cache;
  UniformRandom random(1);
  for (int i = 0; i < 200000; ++i) {  // far more angles than it holds
    const double code = random.Integer(0, 511) * (std::numbers::pi / 256);
    ExpectSame(cache, random.OneIn(2) ? code : random.Real(-10, 10));
    if (testing::Test::HasFailure()) return;
  }
}

TEST(SinCosCache, PassesOnWhatIsNoNumber) {
  SinCosCache cache;
  for (const double angle : {std::nan(""), std::numeric_limits<double>::infinity()}) {
    EXPECT_TRUE(std::isnan(cache.Of(angle).sine));
    EXPECT_TRUE(std::isnan(cache.Of(angle).cosine));
  }
}

}  // namespace
}  // namespace orvandel::test
