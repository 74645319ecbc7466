// The kernel that finds headings, as a loop that compilers turn into vector code; compiled once a level
// (platform/simd_dispatch.h).

#include "base/trigonometry_core.h"
#include "contours/heading_kernels.h"

namespace orvandel {
namespace {

struct Lookup {
  double high[kHeadingBatch];
  double low[kHeadingBatch];
};

/// A loop of its own, because compilers leave look-ups scalar and the loop around them too.
template <typename Table>
void LookUp(const Table& table, const int* steps, int offset, Lookup& found) {
  for (int k = 0; k < kHeadingBatch; ++k) {
    found.high[k] = table.high[steps[k] + offset];
    found.low[k] = table.low[steps[k] + offset];
  }
}

/// Radians, as ArcTan2 gives them.
void FindAngles(const HeadingBatch& batch, double* angles) {
  int steps[kHeadingBatch];
  for (int k = 0; k < kHeadingBatch; ++k)
    steps[k] = StepOf(SlopeOf(-batch.dy[k], batch.dx[k]));
  Lookup tabled;
  LookUp(kSlopeAngles, steps, 0, tabled);
  for (int k = 0; k < kHeadingBatch; ++k)
    angles[k] = ArcTan2From(-batch.dy[k], batch.dx[k], steps[k], {tabled.high[k], tabled.low[k]});
}

void FindHeadings(HeadingBatch& batch) {
  double angles[kHeadingBatch];
  FindAngles(batch, angles);

  int steps[kHeadingBatch];
  Lookup rest;
  for (int k = 0; k < kHeadingBatch; ++k) {
    const ReducedAngle reduced = ReduceAngle(angles[k]);
    steps[k] = reduced.step;
    rest.high[k] = reduced.rest.high;
    rest.low[k] = reduced.rest.low;
  }
  Lookup sines;
  Lookup cosines;
  LookUp(kStepSines, steps, 0, sines);
  LookUp(kStepSines, steps, kStepsPerQuarterTurn, cosines);
  for (int k = 0; k < kHeadingBatch; ++k) {
    const SinCos heading =
        SinCosFrom(angles[k], {rest.high[k], rest.low[k]}, {sines.high[k], sines.low[k]},
                   {cosines.high[k], cosines.low[k]});
    batch.cosine[k] = heading.cosine;
    batch.sine[k] = heading.sine;
  }
}

}  // namespace

namespace ORVANDEL_SIMD_NAMESPACE {
const HeadingKernels kHeadingKernels = {FindHeadings};
}

}  // namespace orvandel
