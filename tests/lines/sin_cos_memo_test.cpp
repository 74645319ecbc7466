#include "lines/sin_cos_memo.h"

#include <cmath>
#include <limits>
#include <numbers>

#include <gtest/gtest.h>

#include "base/trigonometry.h"
#include "tests/support/same_bits.h"
#include "tests/support/uniform_random.h"

namespace orvandel::test {
namespace {

void ExpectSame(SinCosMemo& memo, double angle) {
  const SinCos value = memo.Of(angle);
  EXPECT_TRUE(SameBits(value.sine, Sin(angle))) << angle;
  EXPECT_TRUE(SameBits(value.cosine, Cos(angle))) << angle;
}

TEST(SinCosMemo, TellsZerosApart) {
  SinCosMemo memo;
  for (const double angle : {0.0, -0.0, 0.0, -0.0})
    ExpectSame(memo, angle);
}

TEST(SinCosMemo, GivesTheLibrarysBitsWhenAnglesComeBackAndWhenTheyCollide) {
  SinCosMemo memo;
  UniformRandom random(1);
  for (int i = 0; i < 200000; ++i) {  // far more angles than it holds
    const double code = random.Integer(0, 511) * (std::numbers::pi / 256);
    ExpectSame(memo, random.OneIn(2) ? code : random.Real(-10, 10));
    if (testing::Test::HasFailure()) return;
  }
}

TEST(SinCosMemo, PassesOnWhatIsNoNumber) {
  SinCosMemo memo;
  for (const double angle : {std::nan(""), std::numeric_limits<double>::infinity()}) {
    EXPECT_TRUE(std::isnan(memo.Of(angle).sine));
    EXPECT_TRUE(std::isnan(memo.Of(angle).cosine));
  }
}

}  // namespace
}  // namespace orvandel::test
