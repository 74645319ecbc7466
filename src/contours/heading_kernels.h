#pragma once

#include "platform/simd_level.h"

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

/// Fills in Cos and Sin of ArcTan2(-dy, dx), to the bit. Needs IsNearPoint of every step.
using HeadingKernel = void (*)(HeadingBatch& batch);

/// The kernel of a supported level.
HeadingKernel HeadingKernelOf(SimdLevel level);

}  // namespace orvandel
