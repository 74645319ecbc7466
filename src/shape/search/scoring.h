#pragma once

#include <vector>

#include "image/gradients.h"
#include "shape/model/shape_model.h"
#include "shape/search/tracking.h"

namespace orvandel::shape {

/// How good a pose is, before it is set against chance.
struct PoseScore {
  double raw = 0.0;       ///< 0 to 1
  double coverage = 0.0;  ///< mean credit of visible points
  double rms = 0.0;       ///< of the offsets, level pixels
  double contrast = 0.0;  ///< median ratio of slopes, scene to pattern
  bool is_reversed = false;
  double visible = 0.0;  ///< share of the points
};

struct ScoringBuffers {
  std::vector<float> log_ratios;
  std::vector<float> sorted;
  std::vector<float> credits;
};

/// Judges a pose by all points: an edge counts the more, the closer it lies and the more its contrast, relative to the
/// pattern's, is that of the others. The mean is lowered where edges scatter, where points lie outside the scene,
/// and where the edges that were found hold the pose in one direction only.
PoseScore ScorePose(const EdgePoints& points, const GradientPlane& gradients,
                    const TrackingStep& step, TrackingBuffers& tracking, ScoringBuffers& buffers,
                    const LevelPose& pose);

/// The score that is reported: what a pattern reaches by chance in images without it counts for nothing much,
/// so that one threshold serves all patterns.
double ScoreAboveChance(double raw, double chance);

/// The way back, for scores above 0.
double RawScoreOf(double score, double chance);

}  // namespace orvandel::shape
