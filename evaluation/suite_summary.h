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
};

SuiteSummary Summarize(const std::string& name, std::span<const CaseResult> results);

}  // namespace orvandel::evaluation
