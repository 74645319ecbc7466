#pragma once

#include <span>
#include <vector>

#include "base/geometry.h"
#include "contours/contour_set.h"
#include "lines/line_options.h"
#include "lines/line_segment.h"
#include "verify/match_options.h"
#include "verify/verification_points.h"

namespace orvandel {

/// What the search reads of a pattern, whoever owns it.
struct SegmentModelView {
  Point reference;                        ///< pattern pixels; poses measure the pattern from it
  std::span<const LineSegment> segments;  ///< most points first
  VerificationPointsView points;          ///< where poses are scored while they are tried
  ContourSetView contours;                ///< along which the pose found is scored
  LineOptions lines;                      ///< of its segments, and so of the scene's
  MatchOptions match;
};

/// A learnt pattern.
struct SegmentModel {
  Point reference;  ///< mean of the contour points, pattern pixels
  std::vector<LineSegment> segments;
  VerificationPoints points;
  ContourSetView contours;  ///< of the set that it was learnt from, which outlives the model
  LineOptions lines;
  MatchOptions match;

  SegmentModelView View() const {
    return {reference, segments, points.View(), contours, lines, match};
  }
};

struct SegmentModelOptions {
  LineOptions lines;
  VerificationPointOptions points;
  MatchOptions match;
};

enum class LearningOutcome {
  kLearnt,
  kNoContour,
  kNoSegment,  ///< no straight edge is long enough
};

struct LearntSegments {
  LearningOutcome outcome = LearningOutcome::kNoContour;
  SegmentModel model;  ///< as far as learning went; without a contour the reference is no number
};

/// Learns a pattern from its contours.
///
/// @param contours  conditioned. Their flags are overwritten: 1 on a straight range, else 0.
/// @throws std::bad_alloc
LearntSegments LearnSegmentModel(const ContourSetView& contours,
                                 const SegmentModelOptions& options = {});

}  // namespace orvandel
