#pragma once

#include <utility>
#include <vector>

#include <gtest/gtest.h>

#include "orvandel/classic/line_extracter.h"
#include "search/contour_preparation.h"
#include "search/segment_model.h"
#include "search/segment_search.h"
#include "tests/support/contour_sets.h"
#include "tests/support/images.h"

namespace orvandel::test {

/// A pattern learnt by the engine's functions, with room for scenes.
class SegmentEngine {
 public:
  explicit SegmentEngine(const ImagePtr& pattern, const CrawlOptions& crawl_options = {})
      : crawl(crawl_options) {
    PrepareContours(pattern_contours_.get(), CopyOf(pattern).get(), crawl);
    LearntSegments learnt = LearnSegmentModel(Fields(pattern_contours_));
    EXPECT_EQ(learnt.outcome, LearningOutcome::kLearnt);
    model_ = std::move(learnt.model);
  }

  SegmentMatch Find(const ImagePtr& scene) { return FindAndOverwrite(CopyOf(scene)); }

  SegmentMatch FindAndOverwrite(const ImagePtr& scene) {
    return FindBySegments(model_.View(), scene.get(), crawl,
                          {Fields(scene_contours_), scene_lines_}, options);
  }

  const SegmentModel& model() const { return model_; }
  /// Of the last scene.
  const std::vector<CLineSegment>& SceneSegments() const { return scene_lines_.segments; }

  CrawlOptions crawl;
  SegmentSearchOptions options;

 private:
  ContourHandle pattern_contours_ = MakeEmptySet();
  ContourHandle scene_contours_ = MakeEmptySet();
  CLineExtracter scene_lines_;
  SegmentModel model_;
};

}  // namespace orvandel::test
