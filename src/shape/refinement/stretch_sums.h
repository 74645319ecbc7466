#pragma once

#include "shape/refinement/strip_kernels.h"

namespace orvandel::shape {

/// What the fit takes from a stretch: the weighted products of all columns, as both halves of a
/// symmetric matrix.
struct StretchSums {
  double at[kNumColumns][kNumColumns] = {};

  double Weight() const { return at[kOne][kOne]; }
  double PatternMean() const { return at[kPattern][kOne] / at[kOne][kOne]; }
  /// Sum of squares of the pattern about its mean.
  double PatternSpread() const {
    return at[kPattern][kPattern] - PatternMean() * at[kPattern][kOne];
  }
  double SceneSpread() const {
    return at[kScene][kScene] - at[kScene][kOne] * at[kScene][kOne] / at[kOne][kOne];
  }
};

/// A linear law from the pattern's greys to the scene's, for one stretch.
struct StretchLight {
  double derivative_gain = 0.0;  ///< what the pattern's derivatives are multiplied by
  double gain = 0.0;
  double bias = 0.0;
  bool is_free = false;  ///< gain and bias are its own, whatever the others have
  double trust = 1.0;    ///< factor on the stretch's weights; 0: left out
};

}  // namespace orvandel::shape
