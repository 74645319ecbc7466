#pragma once

#include "orvandel/classic/line_segment.h"
#include "search/coarse_search.h"
#include "search/pose.h"
#include "search/pose_scorer.h"

namespace orvandel {

/// Improves a hypothesis by halving steps of scale and of shift along its angle; the angle stays. The
/// scale may leave the bounds of the search by up to 0.2, the sum of its steps.
///
/// @param pattern_segment,scene_segment  the pair that proposed the hypothesis.
/// @return  the best pose met, the given one among them.
Pose RefinePose(const Hypothesis& hypothesis, const CLineSegment& pattern_segment,
                const CLineSegment& scene_segment, PoseScorer& score_of);

}  // namespace orvandel
