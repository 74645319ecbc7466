#pragma once

#include "shape/refinement/gaussian_blur.h"

namespace orvandel::shape {

/// By what the pattern image has to be blurred, before it is sampled with the plain B-spline, so that it
/// looks like a scene without aliasing at a scale, sampled with the kernel of doubled width. A Gaussian of the
/// same variance would round corners more than the kernel does, and make parts look larger than they are.
BlurTaps MakeWideKernelTaps(double scale);

}  // namespace orvandel::shape
