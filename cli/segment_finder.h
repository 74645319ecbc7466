#pragma once

#include "cli/pattern_finder.h"
#include "evaluation/finder.h"

namespace orvandel::cli {

/// The segment engine as an evaluation sees it.
class SegmentFinder : public evaluation::Finder {
 public:
  explicit SegmentFinder(const SearchOptions& options) : finder_(options) {}

  evaluation::PatternFrame Learn(const ImageFile& pattern) override;
  evaluation::Finding Find(const ImageFile& scene) override;

  /// Of the last search, for drawing.
  const PatternFinder& LastFinder() const { return finder_; }
  const FindResult& LastResult() const { return last_result_; }

 private:
  PatternFinder finder_;
  FindResult last_result_;
};

}  // namespace orvandel::cli
