#pragma once

#include <string>

namespace CLI {
class App;
}

namespace orvandel::cli {

/// How contours are found in a picture.
struct ContourOptions {
  static constexpr int kEstimate = -1;  ///< the threshold that asks for an estimate

  int edge_threshold = 16;  ///< gradient magnitude, 0 to 252; larger sees fainter edges no more
  int min_contour = 10;     ///< points; shorter contours are dropped
  int max_contour = 100000;
};

/// How a pattern is learnt and looked for.
struct SearchOptions {
  ContourOptions contour;
  int accept_score = 80;    ///< percent; the search ends at a pose that reaches it
  double min_scale = 0.25;  ///< scene size over pattern size
  double max_scale = 4.0;
  int timeout_us = 1'000'000;
};

/// What is true of a match: its score reaches the accept score. False for not-a-number.
inline bool IsAccepted(double score, const SearchOptions& options) {
  return score >= options.accept_score;
}

// Both fill `options` while the command line is parsed; it must live as long as `app`.

void AddContourOptions(CLI::App& app, ContourOptions& options);
void AddSearchOptions(CLI::App& app, SearchOptions& options);

/// Throws UsageError when options contradict each other.
void CheckOptions(const ContourOptions& options);

}  // namespace orvandel::cli
