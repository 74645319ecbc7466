#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "orvandel/classic/line_segment.h"
#include "search/deadline.h"
#include "tests/plain/pose_scorer.h"

namespace orvandel::plain {

struct CoarseOptions {
  double min_scale;     ///< smaller scales are not scored
  double max_scale;     ///< nor larger ones
  double accept_score;  ///< percent; a score that reaches it ends the search
  std::int32_t
      max_pattern_segments;  ///< from the front of the pattern's list; more find more, slower
};

/// A pose, how well it fits, and the pair of segments that proposed it.
struct Hypothesis {
  Pose pose;
  double score = 0.0;  ///< percent
  std::size_t pattern_segment = 0;
  std::size_t scene_segment = 0;
};

/// Lays each of the pattern's best-supported segments on every segment of the scene, at the ratio
/// of their lengths and at scales a little above and below, and scores the poses.
///
/// The search ends only between pattern segments: a pass over the scene that has met the accept
/// score or the deadline is still finished, so that a better fit in it is not missed.
///
/// @return  the best hypothesis, the first of equals; one of score 0 with everything 0 when none
///          scored above 0.
Hypothesis FindBestHypothesis(const std::vector<CLineSegment>& pattern,
                              const std::vector<CLineSegment>& scene, const PoseScorer& score_of,
                              const CoarseOptions& options, const Deadline& deadline);

/// From the middle of a pattern segment to the pattern's reference point.
Point ToReference(const CLineSegment& pattern_segment, Point reference);

}  // namespace orvandel::plain
