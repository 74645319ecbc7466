// The kernel that finds unit vectors, as a loop that compilers turn into vector code; compiled once a level
// (platform/simd_dispatch.h).

#include "base/trigonometry_core.simd.h"
#include "contours/unit_vector_kernels.h"

namespace orvandel {
namespace {

struct Lookup {
  double high[kNumLanes];
  double low[kNumLanes];
};

/// A loop of its own, because compilers leave look-ups scalar and the loop around them too.
template <typename Table>
void LookUp(const Table& table, const int* steps, int offset, Lookup& found) {
  for (int k = 0; k < kNumLanes; ++k) {
    found.high[k] = table.high[steps[k] + offset];
    found.low[k] = table.low[steps[k] + offset];
  }
}

/// Radians, as ArcTan2 gives them.
void FindAngles(const StepBatch& batch, double* angles) {
  int steps[kNumLanes];
  for (int k = 0; k < kNumLanes; ++k)
    steps[k] = StepOf(SlopeOf(-batch.dy[k], batch.dx[k]));
  Lookup tabled;
  LookUp(kSlopeAngles, steps, 0, tabled);
  for (int k = 0; k < kNumLanes; ++k)
    angles[k] = ArcTan2From(-batch.dy[k], batch.dx[k], steps[k], {tabled.high[k], tabled.low[k]});
}

void FindUnitVectors(StepBatch& batch) {
  double angles[kNumLanes];
  FindAngles(batch, angles);

  int steps[kNumLanes];
  Lookup rest;
  for (int k = 0; k < kNumLanes; ++k) {
    const ReducedAngle reduced = ReduceAngle(angles[k]);
    steps[k] = reduced.step;
    rest.high[k] = reduced.rest.high;
    rest.low[k] = reduced.rest.low;
  }
  Lookup sines;
  Lookup cosines;
  LookUp(kStepSines, steps, 0, sines);
  LookUp(kStepSines, steps, kStepsPerQuarterTurn, cosines);
  for (int k = 0; k < kNumLanes; ++k) {
    const SinCos direction =
        SinCosFrom(angles[k], {rest.high[k], rest.low[k]}, {sines.high[k], sines.low[k]},
                   {cosines.high[k], cosines.low[k]});
    batch.cosine[k] = direction.cosine;
    batch.sine[k] = direction.sine;
  }
}

}  // namespace

namespace ORVANDEL_SIMD_NAMESPACE {
const UnitVectorKernels kUnitVectorKernels = {FindUnitVectors};
}

}  // namespace orvandel
