#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "cli/find_result.h"
#include "cli/pattern_finder.h"
#include "cli/report.h"

namespace orvandel::cli {

/// What became of one pattern in one scene.
struct FindOutcome {
  std::string scene;        ///< path
  std::size_t pattern = 0;  ///< index in the context; of all when the scene could not be used
  std::optional<FindResult> result;  ///< nothing when the scene could not be used
  std::string error;                 ///< then why

  bool IsFound() const { return result && result->IsFound(); }
  const char* Status() const { return result ? StatusWord(result->status) : "unusable_scene"; }
};

/// What all rows of a report have in common.
struct FindContext {
  struct Pattern {
    std::string path;
    PatternFacts facts;
  };
  std::vector<Pattern> patterns;
  SearchOptions options;
  std::vector<std::string> scenes;  ///< all that will be looked at

  bool HasSeveralPatterns() const { return patterns.size() > 1; }
  /// Path of the outcome's pattern; empty where the scene could not be used.
  std::string PatternOf(const FindOutcome& outcome) const {
    return outcome.result ? patterns[outcome.pattern].path : "";
  }
};

/// Prints the outcomes of `find` one by one.
class FindReport {
 public:
  virtual ~FindReport() = default;
  virtual void Add(const FindOutcome& outcome) = 0;
  /// After the last outcome.
  virtual void End() = 0;
};

// Each prints into `report`, which must live longer.

/// An aligned table.
std::unique_ptr<FindReport> MakeFindTextReport(const FindContext& context, Report& report);
/// A header and a line per match, or per scene without one; fields without a value are empty.
std::unique_ptr<FindReport> MakeFindCsvReport(const FindContext& context, Report& report);
/// One object, printed at the end; numbers without a value are null.
std::unique_ptr<FindReport> MakeFindJsonReport(const FindContext& context, Report& report);

/// The variance's place in a match's covariance: the index in (x, y, angle, scale).
enum PoseValue : std::size_t { kX = 0, kY = 1, kAngle = 2, kScale = 3 };

/// Standard deviation of a value of the pose.
double DeviationOf(const shape::Match& match, PoseValue value);

}  // namespace orvandel::cli
