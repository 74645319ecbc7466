#include "contours/unit_vector_kernels.h"

#include <cmath>

#include <gtest/gtest.h>

#include "base/trigonometry.h"
#include "tests/support/same_bits.h"
#include "tests/support/simd_levels.h"
#include "tests/support/uniform_random.h"

namespace orvandel::test {
namespace {

class UnitVectorKernel : public AtEverySimdLevel {
 protected:
  static void ExpectBitsOfTheFunctions(StepBatch batch) {
    UnitVectorKernelsOf(ActiveSimdLevel()).find_unit_vectors(batch);
    for (int k = 0; k < kNumLanes; ++k) {
      const double angle = ArcTan2(-batch.dy[k], batch.dx[k]);
      EXPECT_TRUE(SameBits(batch.cosine[k], Cos(angle))) << batch.dx[k] << ' ' << batch.dy[k];
      EXPECT_TRUE(SameBits(batch.sine[k], Sin(angle))) << batch.dx[k] << ' ' << batch.dy[k];
    }
  }
};
ORVANDEL_AT_EVERY_SIMD_LEVEL(UnitVectorKernel);

TEST_P(UnitVectorKernel, GivesTheBitsOfTheFunctionsForRandomSteps) {
  UniformRandom random(30);
  for (int i = 0; i < 50000; ++i) {
    StepBatch batch = {};
    for (int k = 0; k < kNumLanes; ++k) {
      const double size = std::pow(10.0, random.Integer(-80, 80));
      batch.dx[k] = size * random.Real(-1, 1);
      batch.dy[k] = (random.OneIn(2) ? size : 1.0) * random.Real(-1, 1);
    }
    ExpectBitsOfTheFunctions(batch);
    if (HasFailure()) return;  // one report is enough
  }
}

TEST_P(UnitVectorKernel, GivesTheBitsOfTheFunctionsAlongTheAxesAndDiagonals) {
  ExpectBitsOfTheFunctions(
      {{1, 1, 0.0, -1, -1, -1, -0.0, 1}, {0.0, 1, 1, 1, 0.0, -1, -1, -0.0}, {}, {}});
}

}  // namespace
}  // namespace orvandel::test
