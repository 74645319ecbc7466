#pragma once

#include <memory>

#include "cli/pattern_finder.h"
#include "evaluation/finder.h"

namespace orvandel::cli {

/// The segment engine as an evaluation sees it.
class SegmentFinder : public evaluation::Finder {
 public:
  explicit SegmentFinder(const SearchOptions& options) : options_(options) {}

  evaluation::PatternFrame Learn(const ImageFile& pattern) override;
  evaluation::Finding Find(const ImageFile& scene) override;

  /// Of the last search, for drawing.
  PatternFinder& LastFinder() { return *finder_; }
  const FindResult& LastResult() const { return last_result_; }

 private:
  SearchOptions options_;
  std::unique_ptr<PatternFinder> finder_;
  FindResult last_result_;
};

}  // namespace orvandel::cli
