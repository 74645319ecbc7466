#pragma once

#include <optional>
#include <string>

#include "evaluation/finder.h"
#include "evaluation/manifest.h"
#include "evaluation/pose_error.h"

namespace orvandel::evaluation {

/// The best match of one search, held against the truth.
struct CaseResult {
  std::string suite;
  std::string name;
  bool is_present = false;         ///< the scene holds the pattern
  std::optional<Finding> finding;  ///< nothing when pattern or scene could not be used
  std::optional<PoseError> error;  ///< against the nearest instance, where there is a match
  bool is_found = false;           ///< the match is at an instance, whatever its score

  bool IsAccepted() const { return finding && finding->HasAccepted(); }
};

/// The error of a search's best match against the nearest of a case's instances; it is found where
/// the corners are off by less than `CornerTolerancePx`.
CaseResult Judge(const std::string& suite, const TestCase& test_case, const Finding& finding,
                 const PatternFrame& frame);

/// Of a case whose pattern or scene could not be used.
CaseResult Unusable(const std::string& suite, const TestCase& test_case);

}  // namespace orvandel::evaluation
