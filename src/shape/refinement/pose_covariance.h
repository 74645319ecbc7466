#pragma once

#include "shape/refinement/refinement_buffers.h"
#include "shape/refinement/strip_fit.h"

namespace orvandel::shape {

/// How sure a fit is, in the pattern's frame: (x, y, radius * angle, radius * log scale).
struct FitCovariance {
  double at[kNumPoseColumns][kNumPoseColumns] = {};
  /// What the stretches pull at the pose, against what the noise explains: 1 where the model is right.
  double inconsistency = 1.0;
};

/// Carries the noise of the scene's and of the pattern's pixels through the fit. Needs the buffers as the
/// last look at the scene left them.
FitCovariance PropagateNoise(const RefinementModel& model, const StripFit& fit,
                             RefinementWorkspace::Buffers& buffers);

/// The covariance of a pose of the scene from that in the pattern's frame.
PoseCovariance InScene(const FitCovariance& covariance, const Similarity& scene_from_pattern,
                       double radius);

/// Root of the mean square by which the corners of the pattern are uncertain, scene pixels.
double CornerDeviation(const FitCovariance& covariance, double scale);

}  // namespace orvandel::shape
