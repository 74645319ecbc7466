#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "cli/pattern_finder.h"
#include "cli/report.h"

namespace orvandel::cli {

/// What became of one scene.
struct SceneOutcome {
  std::string scene;                 ///< path
  std::optional<FindResult> result;  ///< nothing when the scene could not be used
  std::string error;                 ///< then why

  bool IsFound() const { return result && result->IsFound(); }
  const char* Status() const { return result ? StatusWord(result->status) : "unusable_scene"; }
};

/// What all rows of a report have in common.
struct FindContext {
  std::string pattern;  ///< path
  PatternFacts facts;
  SearchOptions options;
  std::vector<std::string> scenes;  ///< all that will be looked at
};

/// Prints the outcomes of `find` one by one.
class FindReport {
 public:
  virtual ~FindReport() = default;
  virtual void Add(const SceneOutcome& outcome) = 0;
  /// After the last outcome.
  virtual void End() = 0;
};

// Each prints into `report`, which must live longer.

/// An aligned table.
std::unique_ptr<FindReport> MakeFindTextReport(const FindContext& context, Report& report);
/// A header and a line per scene; fields without a value are empty.
std::unique_ptr<FindReport> MakeFindCsvReport(Report& report);
/// One object, printed at the end; numbers without a value are null.
std::unique_ptr<FindReport> MakeFindJsonReport(const FindContext& context, Report& report);

}  // namespace orvandel::cli
