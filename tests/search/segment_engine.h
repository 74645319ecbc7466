#pragma once

#include <utility>

#include <gtest/gtest.h>

#include "search/segment_model.h"
#include "search/segment_search.h"
#include "tests/support/images.h"

namespace orvandel::test {

/// An accept score that no hypothesis has.
inline constexpr int kUnreachableScore = 101;

/// A pattern learnt by the engine's functions, with room for scenes.
class SegmentEngine {
 public:
  explicit SegmentEngine(const ImagePtr& pattern, const CrawlOptions& crawl = {})
      : contour_options_{crawl, {}} {
    ExtractEdges(RowsOf(*CopyOf(pattern)), contour_options_, pattern_edges_);
    LearntSegments learnt = LearnSegmentModel(pattern_edges_.contours.View());
    EXPECT_EQ(learnt.outcome, LearningOutcome::kLearnt);
    model_ = std::move(learnt.model);
  }

  SegmentMatch Find(const ImagePtr& scene) { return FindAndOverwrite(CopyOf(scene)); }

  SegmentMatch FindAndOverwrite(const ImagePtr& scene) {
    return FindInImage(model_.View(), RowsOf(*scene), contour_options_, options, scene_edges_);
  }

  const SegmentModel& model() const { return model_; }

  SegmentSearchOptions options;

 private:
  ContourOptions contour_options_;
  ImageEdges pattern_edges_;
  ImageEdges scene_edges_;
  SegmentModel model_;
};

}  // namespace orvandel::test
