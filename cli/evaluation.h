#pragma once

#include <optional>
#include <span>
#include <string>
#include <vector>

#include "cli/manifest.h"
#include "cli/pattern_finder.h"

namespace orvandel::cli {

/// How far a pose is from the truth.
struct PoseError {
  double corner_px = 0;      ///< mean displacement of the pattern picture's four corners
  double angle_deg = 0;      ///< 0 to 180
  double scale_percent = 0;  ///< of the true scale
};

PoseError ErrorOf(const Pose& found, const Pose& truth, int pattern_width, int pattern_height);

/// Whether a pose this far off still counts as the instance: the corners are off by less than 5 %
/// of the pattern picture's diagonal.
bool IsAtInstance(const PoseError& error, int pattern_width, int pattern_height);

/// One search held against the truth.
struct CaseResult {
  std::string suite;
  std::string name;
  bool is_present = false;           ///< the scene holds the pattern
  std::optional<FindResult> result;  ///< nothing when pattern or scene could not be used
  std::optional<PoseError> error;    ///< against the nearest instance, where there is a pose
  bool is_found = false;             ///< the pose is at an instance, whatever its score

  bool IsAccepted() const { return result && result->IsFound(); }
};

/// The errors of a search's pose against the nearest of a case's instances.
CaseResult Judge(const std::string& suite, const TestCase& test_case, const FindResult& result,
                 int pattern_width, int pattern_height);

struct MedianAndP90 {
  double median = 0;  ///< not a number when there are no values
  double p90 = 0;     ///< 90th percentile
};

/// What a suite comes to.
struct SuiteSummary {
  std::string name;
  int num_cases = 0;
  int num_present = 0;      ///< cases whose scene holds the pattern
  int num_found = 0;        ///< of them, the pose is at an instance
  int num_accepted = 0;     ///< of these, the score reaches the accept score
  int num_misplaced = 0;    ///< of the cases that hold it, accepted at a wrong place
  int num_absent = 0;       ///< cases whose scene does not hold the pattern
  int num_false_finds = 0;  ///< of them, accepted
  MedianAndP90 corner_px;   ///< of found cases, as the next two
  MedianAndP90 angle_deg;
  MedianAndP90 scale_percent;
  MedianAndP90 time_ms;  ///< of all searches
};

SuiteSummary Summarize(const std::string& name, std::span<const CaseResult> results);

}  // namespace orvandel::cli
