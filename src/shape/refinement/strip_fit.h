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
  std::size_t strip = 0;                 ///< index in the model's strips
  const Strip* sampled_strip = nullptr;  ///< at the last look
  bool is_preview = false;               ///< looks at few of its pixels
  int level = 0;                         ///< of the scene's pyramid
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
};

/// The pixels that a fit looks at.
const Strip& StripOf(const RefinementModel& model, const StripFit& fit);

/// Whether a blur may differ between the directions, by what a preview tells.
bool MayHaveLineBlur(const RefinementModel& model, const RefinementOptions& options,
                     RefinementWorkspace::Buffers& buffers, const StripFit& fit);

/// Whether the residuals ask for a blur that differs between the directions; its moments at once.
bool FindLineBlur(const RefinementModel& model, const RefinementOptions& options,
                  RefinementWorkspace::Buffers& buffers, StripFit& fit);

/// Neighbouring samples share noise. So many of them say as much as one would by itself.
double NoiseCorrelation(const Strip& strip, double scale_at_level, bool is_wide);

/// Edges sharper than a pixel alias: the residuals along them stand out, or would if there were less
/// noise. A kernel of doubled width does not see that; for other edges it is the noisier one.
bool HasAliasedEdges(const RefinementModel& model, const StripFit& fit);

/// Finds what the last look's solution leaves of the scene: the residuals in the buffers, explained share
/// and RMS residual in the fit.
void MeasureResiduals(const RefinementModel& model, StripFit& fit,
                      RefinementWorkspace::Buffers& buffers);

/// By how much of the outline a pose is held: sum of the squared gradients of the pattern, times the
/// weights that the residuals leave them. At the last look.
double SupportOf(const RefinementWorkspace::Buffers& buffers);

/// The same at another pose, in the light and with the noise of the last look. Samples, weights and sums
/// are that pose's from then on.
double SupportAt(const Strip& strip, const Similarity& scene_from_pattern, const StripFit& fit,
                 RefinementWorkspace::Buffers& buffers);

/// Sums up pattern and scene stretch by stretch, all pixels weighing the same.
void SumAlike(const Strip& strip, RefinementWorkspace::Buffers& buffers);

/// Looks at the scene once: samples it, solves for the pose and the rest, and moves `fit` there.
///
/// @param is_first  of a level: gains, biases and noise are found anew. Else what was found with other
///                  pixels holds for those of a new strip as well.
/// @return          kRefined, or why there is nothing to be fitted.
RefinementOutcome ImproveFit(const RefinementModel& model, const RefinementOptions& options,
                             bool is_first, RefinementWorkspace::Buffers& buffers, StripFit& fit);

}  // namespace orvandel::shape
