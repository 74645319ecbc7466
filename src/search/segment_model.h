#pragma once

#include <span>
#include <vector>

#include "base/geometry.h"
#include "contours/contour_set.h"
#include "orvandel/classic/crawler.h"
#include "orvandel/classic/line_segment.h"
#include "verify/match_options.h"
#include "verify/verification_points.h"

namespace orvandel {

/// What the search reads of a pattern, whoever owns it.
struct SegmentModelView {
  Point reference;                         ///< pattern pixels; poses measure the pattern from it
  std::span<const CLineSegment> segments;  ///< most points first
  VerificationPointsView points;           ///< where poses are scored while they are tried
  ContourSetView contours;                 ///< along which the pose found is scored
  MatchOptions match;
};

/// A learnt pattern.
struct SegmentModel {
  Point reference;  ///< mean of the contour points, pattern pixels
  std::vector<CLineSegment> segments;
  VerificationPoints points;
  ContourSetView contours;  ///< of the set that it was learnt from, which outlives the model
  MatchOptions match;

  SegmentModelView View() const { return {reference, segments, points.View(), contours, match}; }
};

enum class LearningOutcome {
  kLearnt,
  kNoContour,
  kNoSegment,  ///< no straight edge is long enough
};

struct LearntSegments {
  LearningOutcome outcome = LearningOutcome::kNoContour;
  SegmentModel model;  ///< as far as learning went
};

/// Learns a pattern from its contours.
///
/// @param contours  as `PrepareContours` leaves them. Their flags are overwritten: 1 on a straight range,
///                  else 0.
/// @throws std::bad_alloc
LearntSegments LearnSegmentModel(CCrawler& contours, const VerificationPointOptions& options = {});

}  // namespace orvandel
