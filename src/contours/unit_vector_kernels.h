#pragma once

#include "platform/simd_dispatch.h"

namespace orvandel {

/// Contours that are resampled side by side, and steps whose unit vectors are found together.
inline constexpr int kNumLanes = 8;

/// Steps in pixels, y down, and the unit vectors along them: (cosine, -sine).
struct StepBatch {
  double dx[kNumLanes];
  double dy[kNumLanes];
  double cosine[kNumLanes];
  double sine[kNumLanes];
};

struct UnitVectorKernels {
  /// Fills in Cos and Sin of ArcTan2(-dy, dx), to the bit. Needs IsNearPoint of every step.
  void (*find_unit_vectors)(StepBatch& batch);
};

ORVANDEL_DECLARE_KERNELS(UnitVectorKernels)

}  // namespace orvandel
