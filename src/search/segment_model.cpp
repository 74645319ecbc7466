#include "search/segment_model.h"

#include <utility>

#include "contours/crawler_adapter.h"
#include "orvandel/classic/ctd.h"
#include "orvandel/classic/line_extracter.h"

namespace orvandel {

LearntSegments LearnSegmentModel(CCrawler& contours, const VerificationPointOptions& options) {
  LearntSegments learnt;
  SegmentModel& model = learnt.model;
  model.contours = ViewOf(contours);
  if (contours.contour_count == 0) return learnt;

  ctd_centroid(&contours, &model.reference.x, &model.reference.y);
  CLineExtracter lines;
  lines.Extract(&contours);
  model.segments = std::move(lines.segments);
  learnt.outcome = LearningOutcome::kNoSegment;
  if (model.segments.empty()) return learnt;

  model.points = ChooseVerificationPoints(model.contours, options);
  learnt.outcome = LearningOutcome::kLearnt;
  return learnt;
}

}  // namespace orvandel
