#pragma once

#include <limits>

#include "base/geometry.h"
#include "lines/line_segment.h"
#include "search/anchored_pose.h"
#include "search/coarse_search.h"
#include "search/hypothesis.h"

namespace orvandel {

/// Moves a pose by halving steps of scale and of shift along its angle, holding it by the scene point that
/// its pattern segment's middle is laid on.
template <PoseScoring Scorer>
class Refinement {
 public:
  /// @param to_reference  from the pattern segment's middle to the pattern's reference point.
  Refinement(const Hypothesis& start, Point anchor, Point to_reference, Scorer& score_of)
      : rotation_(start.scene_from_pattern.angle),
        to_reference_(to_reference),
        score_of_(score_of),
        best_{start.scene_from_pattern, anchor, start.score} {}

  Similarity Run() {
    double scale_step = kFirstScaleStep;
    double shift_step = kFirstShiftStep;
    for (int i = 0; i < kNumIterations; ++i) {
      const Trial unscaled = best_;
      KeepBetter(At(unscaled.anchor, unscaled.pose.scale - scale_step),
                 At(unscaled.anchor, unscaled.pose.scale + scale_step));
      const Trial unshifted = best_;
      KeepBetter(At(Shifted(unshifted.anchor, -shift_step), unshifted.pose.scale),
                 At(Shifted(unshifted.anchor, shift_step), unshifted.pose.scale));
      scale_step /= 2;
      shift_step /= 2;
    }
    return best_.pose;
  }

 private:
  static constexpr int kNumIterations = 8;
  static constexpr double kFirstScaleStep = 0.1;
  static constexpr double kFirstShiftStep = 10.0;  // pixels

  struct Trial {
    Similarity pose;
    Point anchor;
    double score;
  };

  Trial At(Point anchor, double scale) {
    constexpr double kNeverEnough = std::numeric_limits<double>::infinity();
    const Similarity pose = PoseThrough(anchor, rotation_, scale, to_reference_);
    return {pose, anchor, score_of_(pose, {best_.score, kNeverEnough})};
  }

  /// Along the pose's angle, not along the segment.
  Point Shifted(Point anchor, double distance) const {
    return {anchor.x + distance * rotation_.sin_cos.cosine,
            anchor.y + distance * rotation_.sin_cos.sine};
  }

  /// The second trial must beat the first as well.
  void KeepBetter(const Trial& first, const Trial& second) {
    if (first.score > best_.score) best_ = first;
    if (second.score > best_.score) best_ = second;
  }

  Rotation rotation_;
  Point to_reference_;
  Scorer& score_of_;
  Trial best_;
};

/// Improves a hypothesis in 32 trials; the angle stays. The scale may leave the bounds of the search by up
/// to 0.2, the sum of its steps.
///
/// @param pattern_segment,scene_segment  the pair that proposed the hypothesis.
/// @param reference                      the pattern's reference point, pattern pixels.
/// @return  the best pose met, the given one among them.
template <PoseScoring Scorer>
Similarity RefinePose(const Hypothesis& hypothesis, const LineSegment& pattern_segment,
                      Point reference, const LineSegment& scene_segment, Scorer& score_of) {
  return Refinement<Scorer>(hypothesis, scene_segment.mid, reference - pattern_segment.mid,
                            score_of)
      .Run();
}

}  // namespace orvandel
