#pragma once

#include <span>
#include <string>

#include "evaluation/case_result.h"

namespace orvandel::evaluation {

struct MedianAndP90 {
  double median = 0;  ///< not a number when there are no values
  double p90 = 0;     ///< 90th percentile
};

/// What a suite comes to.
struct SuiteSummary {
  std::string name;
  int num_cases = 0;
  int num_present = 0;      ///< cases whose scene holds the pattern
  int num_found = 0;        ///< of them, the best match is at an instance
  int num_accepted = 0;     ///< of these, accepted
  int num_misplaced = 0;    ///< of the cases that hold it, accepted at a wrong place
  int num_absent = 0;       ///< cases whose scene does not hold the pattern
  int num_false_finds = 0;  ///< of them, accepted
  MedianAndP90 corner_px;   ///< of found cases, as the next two
  MedianAndP90 angle_deg;
  MedianAndP90 scale_percent;
  MedianAndP90 time_ms;  ///< of all searches

  int num_instances = 0;        ///< in all scenes
  int num_instances_found = 0;  ///< of them, with an accepted match
  int num_instances_false = 0;  ///< accepted matches at no instance, in scenes without any as well
  MedianAndP90 instance_corner_px;  ///< of the instances found
  int num_with_covariance = 0;      ///< best matches, accepted and found, that tell theirs
  int num_inside_95 = 0;  ///< of them, the truth lies within the ellipsoid that holds 95 %
};

SuiteSummary Summarize(const std::string& name, std::span<const CaseResult> results);

}  // namespace orvandel::evaluation
