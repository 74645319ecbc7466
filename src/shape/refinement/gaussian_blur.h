#pragma once

#include <vector>

#include "shape/refinement/float_image.h"

namespace orvandel::shape {

/// Taps of a symmetric blur, from the middle outwards; they add up to 1 with the other half.
struct BlurTaps {
  std::vector<float> half;  ///< half[0] is the middle one
  double variance = 0.0;    ///< as the taps have it, pixels squared
};

/// @param ratio  of the first tap to the middle one, below 1: exp(-1 / (2 sigma^2)). Tap k is
///               ratio^(k^2), so that no C library's exp is needed. 0 gives the single tap 1.
BlurTaps MakeGaussianTaps(double ratio);

/// Blurs along rows and columns; the border's values go on outside. `blurred` may not be `image`.
void Blur(const FloatImage& image, const BlurTaps& taps, FloatImage& between, FloatImage& blurred);

}  // namespace orvandel::shape
