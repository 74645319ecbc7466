#include "search/segment_model.h"

#include "contours/extents.h"
#include "lines/line_extraction.h"

namespace orvandel {

LearntSegments LearnSegmentModel(const ContourSetView& contours,
                                 const SegmentModelOptions& options) {
  LearntSegments learnt;
  SegmentModel& model = learnt.model;
  model.contours = contours;
  model.lines = options.lines;
  model.match = options.match;
  model.reference = Centroid(contours);
  model.segments = ExtractSegments(contours, options.lines);
  if (model.segments.empty()) {
    const bool has_contours = contours.NumContours() > 0;
    learnt.outcome = has_contours ? LearningOutcome::kNoSegment : LearningOutcome::kNoContour;
    return learnt;
  }

  model.points = ChooseVerificationPoints(contours, options.points);
  learnt.outcome = LearningOutcome::kLearnt;
  return learnt;
}

}  // namespace orvandel
