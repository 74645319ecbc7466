#pragma once

#include "shape/refinement/pose_covariance.h"
#include "shape/refinement/strip_fit.h"

namespace orvandel::shape {

/// Decides whether a fit is better than the start that it came from. Uses the buffers that the scene is
/// sampled into.
RefinementOutcome JudgeFit(const RefinementModel& model, const RefinementOptions& options,
                           const Similarity& start, const StripFit& fit,
                           const FitCovariance& covariance, RefinementWorkspace::Buffers& buffers);

}  // namespace orvandel::shape
