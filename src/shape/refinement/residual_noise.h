#pragma once

#include <span>

#include "shape/refinement/refinement_model.h"
#include "shape/refinement/stretch_sums.h"
#include "shape/refinement/strip_kernels.h"

namespace orvandel::shape {

/// Medians of sizes without sorting: counts in steps of a sixteenth of an octave.
struct SizeHistogram {
  static constexpr int kBinsPerOctave = 16;
  static constexpr int kNumBins = 40 * kBinsPerOctave;
  int counts[kNumBins] = {};
  int total = 0;
  double grey_sum = 0.0;  ///< of the scene, at the counted pixels

  void Add(float size, float grey);
  double Median() const;  ///< 0 where nothing was counted
};

/// What the residuals say of the noise. Variances are of residuals, grey levels squared.
struct ResidualNoise {
  double base = 0.0;       ///< where the image is flat and black
  double per_grey = 0.0;   ///< more for each grey level: photons
  double per_slope = 0.0;  ///< more for each unit of squared gradient: what the model does not fit
  double steep = 0.0;      ///< where the image is steep
  double steep_ratio = 1.0;  ///< deviation where the image is steep, by that where it is flat
};

/// @param inside  pixels of the strip count where it is 1, in stretches whose light is trusted.
/// @param gain    by which the pattern's gradients appear in the scene.
/// @param black   the scene column's value of grey 0.
/// @param least   that the base cannot fall below: what rounding alone leaves.
ResidualNoise FindResidualNoise(const Strip& strip, std::span<const StretchLight> lights,
                                const float* const* columns, const float* residuals,
                                const float* inside, double gain, double black, double least);

}  // namespace orvandel::shape
