#pragma once

#include "shape/refinement/float_image.h"

namespace orvandel::shape {

/// Variance of the pixels' noise, grey levels squared, judged by second differences that structure
/// hardly reaches. What texture adds makes it too large, never too small.
double EstimateNoiseVariance(const FloatImage& image);

}  // namespace orvandel::shape
