#pragma once

#include "shape/refinement/pose_equations.h"
#include "shape/refinement/refinement_buffers.h"
#include "shape/refinement/residual_noise.h"

namespace orvandel::shape {

/// The fit as it stands between two looks at the scene.
struct StripFit {
  Similarity scene_from_pattern;
  /// Variance by which the scene is softer than the pattern image at the pose's scale, pattern pixels
  /// squared.
  double blur_variance = 0.0;
  std::size_t strip = 0;  ///< index in the model's strips
  int level = 0;          ///< of the scene's pyramid
  LightPrior prior;
  bool has_own_light = false;
  ResidualNoise noise;
  StretchConsensus consensus;
  PoseSolution solution;
  double step_px = 0.0;    ///< how far the last look moved the corners, pattern pixels
  double blur_step = 0.0;  ///< by how much it changed the blur's variance
  double pixels_in_scene = 0.0;
};

/// Neighbouring samples share noise. So many of them say as much as one would by itself.
double NoiseCorrelation(const Strip& strip, double scale_at_level, bool is_wide);

/// Looks at the scene once: samples it, solves for the pose and the rest, and moves `fit` there.
///
/// @param is_first  of a level: gains, biases and noise are found anew.
/// @return          whether there was enough of the part to see.
bool ImproveFit(const RefinementModel& model, const RefinementOptions& options, bool is_first,
                RefinementWorkspace::Buffers& buffers, StripFit& fit);

}  // namespace orvandel::shape
