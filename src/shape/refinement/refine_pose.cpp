#include "shape/refinement/refine_pose.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "base/rounding.h"
#include "shape/refinement/keep_test.h"
#include "shape/refinement/pose_covariance.h"
#include "shape/refinement/refinement_buffers.h"
#include "shape/refinement/strip_fit.h"

namespace orvandel::shape {
namespace {

using Buffers = RefinementWorkspace::Buffers;

/// Scales at a pyramid level's pixels, so that the next coarser one is as good from the upper limit on.
constexpr double kMostScaleAtLevel = 1.4142135623730951;

/// Half the diagonal of the smallest part, scene pixels.
constexpr double kLeastRadius = 4.0;

/// Pixels of a level that are taken around the part, for what the pose may move there.
constexpr double kMargin = 8.0;

/// Below what noise leaves of the best scenes.
constexpr double kSmallError = 0.002;  ///< pattern pixels
constexpr double kSmallStep =
    0.02;  ///< likewise; where weights change, larger steps come in series
/// A change of the blur by less, as a share of what the pattern's own edges and the scene's blur have
/// together, moves the pose by nothing of account.
constexpr double kStillShrinks = 0.8;  ///< the residuals' variance, from look to look
constexpr double kSmallBlurShare = 0.04;
constexpr double kOwnBlur = 0.9;  ///< pattern pixels squared
/// Round blur of less variance, scene pixels squared, may as well be Gaussian: a disk of that variance
/// has a radius of 1.5 pixels. A disk must fit the edges better by some per cent.
constexpr double kLeastDiskVariance = 0.6;
constexpr double kDiskResidual = 0.94;    ///< of the variance
constexpr double kDiskWorthTrying = 2.0;  ///< likewise, at the first look
/// How often to look at the scene, at most.
constexpr int kFineLooks = 8;
constexpr int kCoarseLooks = 4;
constexpr int kPreviewLooks = 4;
/// Starts that are further off, in pixels of a level, begin a level coarser.
constexpr double kSafeStart = 1.2;
constexpr int kMostCoarser = 2;

bool IsUsable(const Similarity& pose, const RefinementModel& model) {
  return std::isfinite(pose.x) && std::isfinite(pose.y) && std::isfinite(pose.angle) &&
         std::isfinite(pose.scale) && pose.scale * model.radius >= kLeastRadius;
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

/// What a further look would change, pattern pixels: a first step leaves a tenth at most, and later ones
/// shrink at least by the factor that they shrank by last.
double ErrorLeft(const StripFit& fit, bool is_first) {
  constexpr double kFirstShrinks = 0.1;
  if (is_first) return kFirstShrinks * fit.step_px;
  const double shrunk = fit.step_before_px > 0.0 ? fit.step_px / fit.step_before_px : 1.0;
  return fit.step_px * std::min(shrunk, 1.0);
}

/// Whether the pose, the blur and the robust weights have come to rest.
bool IsSettled(const StripFit& fit, bool is_first) {
  const double small_blur_step = kSmallBlurShare * (kOwnBlur + std::max(fit.blur, 0.0));
  if (ErrorLeft(fit, is_first) > kSmallError || fit.step_px > kSmallStep) return false;
  if (fit.blur_step > small_blur_step) return false;
  if (!fit.is_obstructed) return true;
  // What is in the way is told from noise step by step: the less of it counts, the smaller the noise.
  return !is_first && fit.noise.base > kStillShrinks * fit.noise_before.base &&
         fit.noise.steep > kStillShrinks * fit.noise_before.steep;
}

/// Looks at the scene until the steps are small. kRefined, or why there was nothing to be fitted.
///
/// @param is_known  whether light and noise are known from looks before.
RefinementOutcome LookUntilSettled(const RefinementModel& model, const RefinementOptions& options,
                                   bool is_known, int most_looks, Buffers& buffers, StripFit& fit) {
  for (int look = 0; look < most_looks; ++look) {
    const bool is_first = look == 0;
    const RefinementOutcome outcome =
        ImproveFit(model, options, is_first && !is_known, buffers, fit);
    if (outcome != RefinementOutcome::kRefined) return outcome;
    if (IsSettled(fit, is_first)) break;
  }
  return RefinementOutcome::kRefined;
}

/// Fits a line or a disk where the scene's blur asks for one.
RefinementOutcome ShapeBlur(const RefinementModel& model, const RefinementOptions& options,
                            bool may_be_line, Buffers& buffers, StripFit& fit) {
  if (may_be_line && FindLineBlur(model, options, buffers, fit))
    return LookUntilSettled(model, options, false, kFineLooks, buffers, fit);
  const double scale = fit.scene_from_pattern.scale;
  if (fit.moments.round * scale * scale < kLeastDiskVariance) return RefinementOutcome::kRefined;
  const StripFit with_round = fit;
  fit.shape = BlurShape::kDisk;
  if (ImproveFit(model, options, true, buffers, fit) == RefinementOutcome::kRefined &&
      fit.noise.steep < kDiskWorthTrying * with_round.noise.steep &&
      LookUntilSettled(model, options, true, kFineLooks, buffers, fit) ==
          RefinementOutcome::kRefined &&
      fit.noise.steep < kDiskResidual * with_round.noise.steep)
    return RefinementOutcome::kRefined;
  fit = with_round;
  return ImproveFit(model, options, true, buffers, fit);
}

/// From coarse to fine, by a few pixels; then by all of them, with the kernel and the blur that the scene
/// asks for.
RefinementOutcome FitPose(const RefinementModel& model, const ImageView& scene,
                          const RefinementOptions& options, Buffers& buffers, StripFit& fit) {
  RefinementOutcome outcome = RefinementOutcome::kRefined;
  const double start_scale = fit.scene_from_pattern.scale;
  const int finest = LevelFor(start_scale);
  for (int level = finest + LevelsCoarser(options.start_error_px, start_scale); level >= finest;
       --level) {
    fit.level = level;
    fit.has_own_light = false;
    buffers.source.is_wide = false;
    if (!OpenScene(scene, level, model, fit.scene_from_pattern, kMargin, buffers.source))
      return RefinementOutcome::kTooFewPixels;
    fit.is_preview = true;
    const StripFit before = fit;
    outcome = LookUntilSettled(model, options, false, level > finest ? kCoarseLooks : kPreviewLooks,
                               buffers, fit);
    if (outcome != RefinementOutcome::kRefined) fit = before;
  }
  const bool may_be_line =
      outcome != RefinementOutcome::kRefined || MayHaveLineBlur(model, options, buffers, fit);
  fit.is_preview = false;
  buffers.source.is_wide = outcome == RefinementOutcome::kRefined && HasAliasedEdges(model, fit);
  // What aliasing leaves at the edges may have looked like light.
  const bool is_known =
      outcome == RefinementOutcome::kRefined && !(buffers.source.is_wide && fit.has_own_light);
  if (!is_known) fit.has_own_light = false;
  outcome = LookUntilSettled(model, options, is_known, kFineLooks, buffers, fit);
  if (outcome != RefinementOutcome::kRefined) return outcome;
  return ShapeBlur(model, options, may_be_line, buffers, fit);
}

ExtraBlur BlurInScene(const StripFit& fit) {
  const Similarity& pose = fit.scene_from_pattern;
  ExtraBlur blur;
  blur.shape = fit.shape;
  if (fit.shape == BlurShape::kDisk) {
    blur.radius_px = pose.scale * DiskRadiusOf(fit.moments.round);
  } else if (fit.shape == BlurShape::kLine) {
    const LineBlur line = LineOf(fit.moments);
    blur.length_px = pose.scale * line.length;
    blur.variance_px2 = pose.scale * pose.scale * line.rest;
    const double direction = NormalizedAngle(2.0 * (ArcTan2(line.sine, line.cosine) + pose.angle));
    blur.direction = 0.5 * direction;  // a line has no sense
  } else {
    blur.variance_px2 = pose.scale * pose.scale * fit.moments.round;
  }
  return blur;
}

/// The covariance of a start that is returned: as sure as the search says it is, alike in all directions.
PoseCovariance StartCovariance(const RefinementModel& model, const RefinementOptions& options,
                               const Similarity& start) {
  const double deviation =
      options.start_deviation_px > 0.0 ? options.start_deviation_px : options.start_error_px;
  // Half of a corner's square comes from the shift, a quarter each from angle and scale.
  FitCovariance covariance;
  const double square = 0.25 * deviation * deviation / (start.scale * start.scale);
  for (int i = 0; i < kNumPoseColumns; ++i)
    covariance.at[i][i] = square;
  return InScene(covariance, start, model.radius);
}

/// Refines with the angle fitted only where the pattern tells it.
Refinement Refine(const RefinementModel& model, const ImageView& scene, const Similarity& start,
                  const RefinementOptions& options, RefinementWorkspace& workspace) {
  Refinement result;
  result.scene_from_pattern = start;
  if (!IsUsable(start, model)) return result;
  result.covariance = StartCovariance(model, options, start);
  Buffers& buffers = workspace.Get();
  StripFit fit;
  fit.scene_from_pattern = start;
  result.outcome = FitPose(model, scene, options, buffers, fit);
  if (result.outcome != RefinementOutcome::kRefined) return result;

  MeasureResiduals(model, fit, buffers);
  const FitCovariance covariance = PropagateNoise(model, fit, buffers);
  result.outcome = JudgeFit(model, options, start, fit, covariance, buffers);
  result.rms_residual = fit.rms_residual;
  result.explained_share = fit.explained_share;
  result.gain = fit.consensus.gain;
  result.bias = fit.consensus.bias + buffers.source.offset - fit.consensus.gain * model.grey_offset;
  result.blur = BlurInScene(fit);
  if (result.outcome != RefinementOutcome::kRefined) return result;
  result.scene_from_pattern = fit.scene_from_pattern;
  result.scene_from_pattern.angle = NormalizedAngle(fit.scene_from_pattern.angle);
  result.covariance = InScene(covariance, fit.scene_from_pattern, model.radius);
  return result;
}

}  // namespace

void LeaveAngleOpen(PoseCovariance& covariance) {
  constexpr std::size_t kAngle = 2;
  for (std::size_t i = 0; i < 4; ++i) {
    covariance[4 * kAngle + i] = 0.0;
    covariance[4 * i + kAngle] = 0.0;
  }
  covariance[4 * kAngle + kAngle] = std::numeric_limits<double>::infinity();
}

Refinement RefinePose(const RefinementModel& model, const ImageView& scene, const Similarity& start,
                      const RefinementOptions& options, RefinementWorkspace& workspace) {
  RefinementOptions fitted = options;
  fitted.fit_angle = options.fit_angle && model.tells_angle;
  Refinement result = Refine(model, scene, start, fitted, workspace);
  if (options.fit_angle && !model.tells_angle) LeaveAngleOpen(result.covariance);
  return result;
}

}  // namespace orvandel::shape
