#pragma once

#include "shape/refinement/pose_equations.h"
#include "shape/refinement/refinement_buffers.h"
#include "shape/refinement/residual_noise.h"

namespace orvandel::shape {

/// The fit as it stands between two looks at the scene.
struct StripFit {
  Similarity scene_from_pattern;
  BlurShape shape = BlurShape::kRound;
  BlurMoments moments;  ///< by which the scene is softer than the pattern image at the pose's scale
  Similarity sampled_pose;  ///< at the last look
  double blur = 0.0;  ///< of the samples against the pattern's values then, pattern pixels squared
  std::size_t strip = 0;  ///< index in the model's strips
  int level = 0;          ///< of the scene's pyramid
  LightPrior prior;
  bool has_own_light = false;
  ResidualNoise noise;
  ResidualNoise noise_before;  ///< at the look before
  StretchConsensus consensus;
  bool is_obstructed = false;  ///< some stretches did not show the pattern, or under another light
  PoseSolution solution;
  double correlation = 1.0;      ///< see NoiseCorrelation
  double explained_share = 0.0;  ///< of the scene's variation along the outline, noise left out
  double rms_residual = 0.0;     ///< weighted, grey levels
  double step_px = 0.0;          ///< how far the last look moved the corners, pattern pixels
  double step_before_px = 0.0;   ///< the look before
  double blur_step = 0.0;        ///< by how much it changed the blur's variance
  double pixels_in_scene = 0.0;
};

/// Whether the residuals ask for a blur that differs between the directions; its moments at once.
bool FindLineBlur(const RefinementModel& model, const RefinementOptions& options,
                  RefinementWorkspace::Buffers& buffers, StripFit& fit);

/// Neighbouring samples share noise. So many of them say as much as one would by itself.
double NoiseCorrelation(const Strip& strip, double scale_at_level, bool is_wide);

/// Edges sharper than a pixel alias: the residuals along them stand out, or would if there were less
/// noise. A kernel of doubled width does not see that; for other edges it is the noisier one.
bool HasAliasedEdges(const RefinementModel& model, const StripFit& fit);

/// Samples the scene at a pose and sums up the stretches, all pixels weighing the same; the pattern's
/// columns stay as they are.
void SampleAlike(const Strip& strip, const Similarity& scene_from_pattern,
                 RefinementWorkspace::Buffers& buffers);

/// Looks at the scene once: samples it, solves for the pose and the rest, and moves `fit` there.
///
/// @param is_first  of a level: gains, biases and noise are found anew.
/// @return          kRefined, or why there is nothing to be fitted.
RefinementOutcome ImproveFit(const RefinementModel& model, const RefinementOptions& options,
                             bool is_first, RefinementWorkspace::Buffers& buffers, StripFit& fit);

}  // namespace orvandel::shape
