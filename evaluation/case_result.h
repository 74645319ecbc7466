#pragma once

#include <optional>
#include <string>
#include <vector>

#include "evaluation/finder.h"
#include "evaluation/manifest.h"
#include "evaluation/pose_error.h"

namespace orvandel::evaluation {

/// The matches of one search, held against the truth.
struct CaseResult {
  std::string suite;
  std::string name;
  bool is_present = false;         ///< the scene holds the pattern
  std::optional<Finding> finding;  ///< nothing when pattern or scene could not be used
  // Of the best match.
  std::optional<PoseError> error;  ///< against the nearest instance, where there is a match
  bool is_found = false;           ///< it is at an instance, whatever its score
  /// Of an accepted one at an instance, with its covariance: its squared distance from the truth by
  /// the covariance's measure, as chi-squared of `num_free` degrees of freedom has it.
  std::optional<double> squared_deviation;
  int num_free = 0;  ///< of position, angle and scale: those that were not given

  Symmetry symmetry;  ///< of the pattern
  // Of all accepted matches, each instance with one of them at most.
  int num_instances = 0;
  std::vector<PoseError> instance_errors;  ///< of the instances found
  int num_false = 0;                       ///< matches at no instance

  bool IsAccepted() const { return finding && finding->HasAccepted(); }
};

/// Holds matches against a case's instances, with the symmetry and the tolerance that the case's
/// parameters tell.
CaseResult Judge(const std::string& suite, const TestCase& test_case, const Finding& finding,
                 const PatternFrame& frame);

/// Of a case whose pattern or scene could not be used.
CaseResult Unusable(const std::string& suite, const TestCase& test_case);

}  // namespace orvandel::evaluation
