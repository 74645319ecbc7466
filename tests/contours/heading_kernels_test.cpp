#include "contours/heading_kernels.h"

#include <cmath>

#include <gtest/gtest.h>

#include "base/trigonometry.h"
#include "tests/support/same_bits.h"
#include "tests/support/simd_levels.h"
#include "tests/support/uniform_random.h"

namespace orvandel::test {
namespace {

class HeadingKernel : public AtEverySimdLevel {
 protected:
  static void ExpectBitsOfTheFunctions(HeadingBatch batch) {
    HeadingKernelsOf(ActiveSimdLevel()).find_headings(batch);
    for (int k = 0; k < kHeadingBatch; ++k) {
      const double angle = ArcTan2(-batch.dy[k], batch.dx[k]);
      EXPECT_TRUE(SameBits(batch.cosine[k], Cos(angle))) << batch.dx[k] << ' ' << batch.dy[k];
      EXPECT_TRUE(SameBits(batch.sine[k], Sin(angle))) << batch.dx[k] << ' ' << batch.dy[k];
    }
  }
};
ORVANDEL_AT_EVERY_SIMD_LEVEL(HeadingKernel);

TEST_P(HeadingKernel, GivesTheBitsOfTheFunctionsForRandomSteps) {
  UniformRandom random(30);
  for (int i = 0; i < 50000; ++i) {
    HeadingBatch batch = {};
    for (int k = 0; k < kHeadingBatch; ++k) {
      const double size = std::pow(10.0, random.Integer(-80, 80));
      batch.dx[k] = size * random.Real(-1, 1);
      batch.dy[k] = (random.OneIn(2) ? size : 1.0) * random.Real(-1, 1);
    }
    ExpectBitsOfTheFunctions(batch);
    if (HasFailure()) return;  // one report is enough
  }
}

TEST_P(HeadingKernel, GivesTheBitsOfTheFunctionsAlongTheAxesAndDiagonals) {
  ExpectBitsOfTheFunctions(
      {{1, 1, 0.0, -1, -1, -1, -0.0, 1}, {0.0, 1, 1, 1, 0.0, -1, -1, -0.0}, {}, {}});
}

}  // namespace
}  // namespace orvandel::test
