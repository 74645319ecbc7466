#pragma once

#include "search/contour_preparation.h"
#include "search/segment_search_options.h"

namespace CLI {
class App;
}

namespace orvandel::cli {

/// The edge threshold that asks for an estimate from the image.
inline constexpr int kEstimateThreshold = -1;

/// How a pattern is learnt and looked for.
struct SearchOptions {
  CrawlOptions crawl;  ///< its threshold may be `kEstimateThreshold`
  SegmentSearchOptions search;
};

/// What is true of a match: its score reaches the accept score. False for not-a-number.
inline bool IsAccepted(double score, const SearchOptions& options) {
  return score >= options.search.accept_score;
}

// Both fill `options` while the command line is parsed; it must live as long as `app`.

void AddContourOptions(CLI::App& app, CrawlOptions& options);
void AddSearchOptions(CLI::App& app, SearchOptions& options);

/// Throws UsageError when options contradict each other.
void CheckOptions(const CrawlOptions& options);

}  // namespace orvandel::cli
