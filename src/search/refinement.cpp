#include "search/refinement.h"

#include <limits>

namespace orvandel {
namespace {

constexpr int kNumIterations = 8;
constexpr double kFirstScaleStep = 0.1;
constexpr double kFirstShiftStep = 10.0;  // pixels

/// A pose held by the scene point that its pattern segment's middle is laid on.
class Refinement {
 public:
  Refinement(const Hypothesis& start, Point anchor, Point to_reference, PoseScorer& score_of)
      : rotation_(start.pose.angle),
        to_reference_(to_reference),
        score_of_(score_of),
        best_{start.pose, anchor, start.score} {}

  Pose Run() {
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
  struct Trial {
    Pose pose;
    Point anchor;
    double score;
  };

  Trial At(Point anchor, double scale) {
    constexpr double kNeverEnough = std::numeric_limits<double>::infinity();
    const Pose pose = PoseThrough(anchor, rotation_, scale, to_reference_);
    return {pose, anchor, score_of_(pose, {best_.score, kNeverEnough})};
  }

  /// Along the pose's angle, not along the segment.
  Point Shifted(Point anchor, double distance) const {
    return {anchor.x + distance * rotation_.turn.cosine, anchor.y + distance * rotation_.turn.sine};
  }

  /// The second trial must beat the first as well.
  void KeepBetter(const Trial& first, const Trial& second) {
    if (first.score > best_.score) best_ = first;
    if (second.score > best_.score) best_ = second;
  }

  Rotation rotation_;
  Point to_reference_;
  PoseScorer& score_of_;
  Trial best_;
};

}  // namespace

Pose RefinePose(const Hypothesis& hypothesis, const CLineSegment& pattern_segment,
                const CLineSegment& scene_segment, PoseScorer& score_of) {
  return Refinement(hypothesis, {scene_segment.mid_x, scene_segment.mid_y},
                    ToReference(pattern_segment, score_of.Reference()), score_of)
      .Run();
}

}  // namespace orvandel
