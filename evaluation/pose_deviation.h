#pragma once

#include <array>

#include "evaluation/pose_error.h"

namespace orvandel::evaluation {

/// How far a pose is from the truth, in the measure of its own covariance.
struct PoseDeviation {
  double squared = 0;  ///< Mahalanobis distance squared; not a number without a usable covariance
  int num_free = 0;    ///< values that have a variance above 0: position, angle, scale
};

/// @param covariance  of (x, y, angle, scale), row by row: pixels, radians, 1. A value of variance 0
///                    was given, not found, and counts for nothing; nor does one of an infinite
///                    variance, nor a full circle's angle.
/// The others as for `ErrorOf`.
PoseDeviation DeviationOf(const Similarity& found, const std::array<double, 16>& covariance,
                          const Similarity& truth, const PatternFrame& frame, Symmetry symmetry);

/// The squared deviation that 95 % of exact covariances' poses stay below, 1 to 4 values free: the
/// 95th percentile of chi-squared.
double NinetyFivePercent(int num_free);

}  // namespace orvandel::evaluation
