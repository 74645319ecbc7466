#pragma once

#include <optional>
#include <string>
#include <vector>

#include "cli/engine.h"
#include "search/contour_preparation.h"
#include "search/segment_search_options.h"
#include "shape/find_shapes.h"

namespace CLI {
class App;
class Option;
}  // namespace CLI

namespace orvandel::cli {

/// The edge threshold that asks for an estimate from the image.
inline constexpr int kEstimateThreshold = -1;

/// How a pattern is learnt and looked for.
struct SearchOptions {
  Engine engine = Engine::kShapes;
  shape::FindOptions shapes;       ///< of the shape engine
  bool tells_max_matches = false;  ///< the user said how many of them

  // Of the segment engine.
  CrawlOptions crawl;  ///< its threshold may be `kEstimateThreshold`
  SegmentSearchOptions search;

  double TimeoutMs() const {
    return engine == Engine::kShapes ? static_cast<double>(shapes.time_budget_us) / 1000.0
                                     : search.timeout_us / 1000.0;
  }
};

/// What is true of the segment engine's match: its score reaches the accept score. False for
/// not-a-number.
inline bool IsAccepted(double score, const SearchOptions& options) {
  return score >= options.search.accept_score;
}

/// The words of the polarities, as --polarity spells them.
const char* PolarityWord(shape::Polarity polarity);

/// The options of both engines on the command line. Which of them hold is known when all are
/// parsed, for --engine may stand anywhere.
class SearchArguments {
 public:
  /// Adds --engine and how the engines learn. This object must live as long as `app`.
  void AddLearningTo(CLI::App& app);
  /// The same and how they search.
  void AddTo(CLI::App& app);

  /// Throws UsageError for what the engine does not know, and for options that contradict each
  /// other.
  SearchOptions Resolve() const;

 private:
  void AddEngine(CLI::App& app);
  void AddShared(CLI::App& app);
  void AddOfShapes(CLI::App& app);

  SearchOptions options_;  // what means the same to every engine that knows it
  // What the engines read differently.
  std::optional<std::string> scale_;
  std::optional<std::string> min_score_;
  std::optional<std::string> timeout_;
  std::vector<const CLI::Option*> of_shapes_;
  std::vector<const CLI::Option*> of_segments_;
};

/// Adds the options of contours; `options` must live as long as `app`.
std::vector<const CLI::Option*> AddContourOptions(CLI::App& app, CrawlOptions& options);

/// Throws UsageError when options contradict each other.
void CheckOptions(const CrawlOptions& options);

}  // namespace orvandel::cli
