#pragma once

#include <span>
#include <vector>

#include "shape/refinement/pose_equations.h"
#include "shape/refinement/stretch_fit.h"
#include "shape/refinement/weighted_median.h"

namespace orvandel::shape {

/// What the stretches' own fits say together.
struct StretchConsensus {
  double gain = 0.0;             ///< median, weighted by importance; negative: inverted contrast
  double bias = 0.0;             ///< median grey at pattern grey 0, likewise
  double residual = 0.0;         ///< median of mean weighted squares
  bool is_uneven = false;        ///< gains differ, or some stretches do not show the pattern
  double same_sign_share = 1.0;  ///< of the importance
};

/// Lists that medians are taken of.
struct MedianScratch {
  std::vector<WeightedValue> values;
  std::vector<WeightedValue> ratios;
};

/// Judges each stretch against the others and writes its trust: 0 for one that does not show the
/// pattern, less than 1 for one that fits worse than most.
///
/// @param sign  that a gain must have: 1, -1, or 0 for the one that most have.
StretchConsensus JudgeStretches(std::span<const StretchFit> fits, double sign, bool any_sign,
                                std::span<StretchLight> lights, MedianScratch& scratch);

/// How far the stretches' gains and biases really vary, beyond noise.
///
/// @param correlation  neighbouring residuals share noise: so many pixels say as much as one.
LightPrior FindLightPrior(std::span<const StretchSums> sums, std::span<const StretchFit> fits,
                          const StretchConsensus& consensus, std::span<const StretchLight> lights,
                          double correlation, MedianScratch& scratch);

/// Whether a gain and a bias for each stretch explain clearly more than common ones do.
bool NeedsOwnLight(std::span<const StretchSums> sums, std::span<const StretchFit> fits,
                   const PoseSolution& solution, std::span<const StretchLight> lights,
                   double correlation, MedianScratch& scratch);

}  // namespace orvandel::shape
