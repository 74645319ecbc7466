#pragma once

#include <span>

#include "shape/refinement/stretch_sums.h"

namespace orvandel::shape {

/// A stretch fitted by itself, with a gain, a bias and a small shift of its own.
struct StretchFit {
  double gain = 0.0;
  double bias = 0.0;
  double gain_variance = 0.0;  ///< as the weights have it
  double bias_variance = 0.0;  ///< of the grey at the stretch's mean pattern grey
  double importance = 0.0;     ///< sum of squares of the pattern about its mean
  double residual = 0.0;       ///< mean weighted square of what is left
  double explained = 0.0;      ///< share of the scene's variation, 0 to 1
  int num_pixels = 0;          ///< that weigh something; 0: nothing was fitted
};

/// Fits each stretch by itself. The shift keeps a start that is half a pixel off from making all
/// gains small.
///
/// @param num_pixels  of each stretch that lie in the scene.
void FitStretches(std::span<const StretchSums> sums, std::span<const int> num_pixels,
                  std::span<StretchFit> fits);

}  // namespace orvandel::shape
