#pragma once

#include "platform/simd_dispatch.h"

namespace orvandel {

/// Steps whose headings are found together.
inline constexpr int kHeadingBatch = 8;

/// Steps in pixels, y down, and the cosines and sines of their directions.
struct HeadingBatch {
  double dx[kHeadingBatch];
  double dy[kHeadingBatch];
  double cosine[kHeadingBatch];
  double sine[kHeadingBatch];
};

struct HeadingKernels {
  /// Fills in Cos and Sin of ArcTan2(-dy, dx), to the bit. Needs IsNearPoint of every step.
  void (*find_headings)(HeadingBatch& batch);
};

ORVANDEL_DECLARE_KERNELS(HeadingKernels)

}  // namespace orvandel
