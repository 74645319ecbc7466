#include "shape/refinement/refine_pose.h"

#include <algorithm>
#include <cmath>

#include "base/rounding.h"
#include "shape/refinement/refinement_buffers.h"
#include "shape/refinement/strip_fit.h"

namespace orvandel::shape {
namespace {

using Buffers = RefinementWorkspace::Buffers;

/// Scales at a pyramid level's pixels, so that the next coarser one is as good from the upper limit on.
constexpr double kMostScaleAtLevel = 1.4142135623730951;

/// A level needs at least so many pixels each way, for a kernel of doubled width.
constexpr int kLeastSide = 8;

/// A step as small leaves an error of second order, below what noise leaves.
constexpr double kSmallStep = 0.02;  ///< pattern pixels
constexpr double kSmallBlurStep = 0.05;
constexpr int kMostLooks = 8;
constexpr int kMostCoarseLooks = 4;
/// Starts that are further off, in pixels of a level, begin a level coarser.
constexpr double kSafeStart = 1.2;
constexpr int kMostCoarser = 2;

bool IsUsable(const Similarity& pose) {
  return std::isfinite(pose.x) && std::isfinite(pose.y) && std::isfinite(pose.angle) &&
         std::isfinite(pose.scale) && pose.scale > 0.0;
}

int LevelFor(double scale) {
  int level = 0;
  while (scale > kMostScaleAtLevel && level < 8) {
    scale *= 0.5;
    ++level;
  }
  return level;
}

int LevelsCoarser(double start_error_px, double scale) {
  int coarser = 0;
  for (double error = start_error_px / std::max(scale, 1.0);
       error > kSafeStart && coarser < kMostCoarser; error *= 0.5)
    ++coarser;
  return coarser;
}

int SmallerSide(const ImageView& scene) {
  return std::visit(
      [](const auto& image) { return image.IsEmpty() ? 0 : std::min(image.width, image.height); },
      scene);
}

}  // namespace

Refinement RefinePose(const RefinementModel& model, const ImageView& scene, const Similarity& start,
                      const RefinementOptions& options, RefinementWorkspace& workspace) {
  Refinement result;
  result.scene_from_pattern = start;
  if (!IsUsable(start)) return result;
  Buffers& buffers = workspace.Get();
  StripFit fit;
  fit.scene_from_pattern = start;
  const int finest = LevelFor(start.scale);
  for (int level = finest + LevelsCoarser(options.start_error_px, start.scale); level >= finest;
       --level) {
    if ((SmallerSide(scene) >> level) < kLeastSide) return result;
    fit.level = level;
    OpenScene(scene, level, model, fit.scene_from_pattern, 8.0, buffers.source);
    if (level > 0 && std::min(buffers.source.means.width, buffers.source.means.height) < kLeastSide)
      return result;
    const int most = level > finest ? kMostCoarseLooks : kMostLooks;
    for (int look = 0; look < most; ++look) {
      if (!ImproveFit(model, options, look == 0, buffers, fit)) return result;
      if (look > 0 && fit.step_px < kSmallStep && std::abs(fit.blur_step) < kSmallBlurStep) break;
    }
  }
  result.outcome = RefinementOutcome::kRefined;
  result.scene_from_pattern = fit.scene_from_pattern;
  result.scene_from_pattern.angle = NormalizedAngle(fit.scene_from_pattern.angle);
  result.gain = fit.solution.by_column[kPattern];
  result.bias = fit.solution.by_column[kOne];
  return result;
}

}  // namespace orvandel::shape
