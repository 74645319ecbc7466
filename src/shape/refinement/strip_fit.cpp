#include "shape/refinement/strip_fit.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "shape/refinement/spline_stencils.h"

namespace orvandel::shape {
namespace {

using Buffers = RefinementWorkspace::Buffers;

/// Fewer pixels say too little of a pose, and of their noise.
constexpr int kLeastPixels = 60;

/// Variances of blur, pattern pixels squared, from which the softer strips serve, and at which they give
/// way again to the sharper ones.
constexpr double kSofterFrom[kNumStrips - 1] = {0.75, 3.2};
constexpr double kSharperFrom[kNumStrips - 1] = {0.6, 2.6};

/// The sharpest that extrapolating the blur downwards can stand for; and the softest.
constexpr double kLeastBlur = -0.3;
constexpr double kMostBlur = 30.0;

/// Times what noise would seem to explain, that a scene which shows the pattern must.
constexpr double kLeastEvidence = 4.0;

/// Residuals weigh nothing from six deviations on: with Tukey's weights half as much already at 3.2.
constexpr double kReach = 6.0;
/// What the model does not fit at the edges counts fully for what is an outlier, and by this share for
/// weights: a full share gives all weight to the flat pixels, which say nothing.
constexpr double kMismatchShare = 0.3;
/// Edges may always be this far off, pattern pixels, before they are outliers.
constexpr double kFreeMismatch = 0.02;

/// Deviation of residuals at the edges, by that in flat places, from which edges count as aliased.
constexpr double kAliasedRatio = 2.2;
/// By what aliasing moves the corners of a part whose edges are as sharp as pixels make them. Below so much
/// noise the wider kernel's loss is the smaller one.
constexpr double kAliasingError = 0.02;  ///< pattern pixels

/// Blur counts as elongated where its moments differ by this, pattern pixels squared: what aliasing can
/// feign, and a share of the blur that there is.
constexpr double kLeastElongation = 0.17;
constexpr double kElongationByBlur = 0.06;
constexpr double kOwnBlur = 0.9;
constexpr double kSureElongation = 5.0;  ///< in deviations
/// A preview rules elongation out that its noise hides from it by no more than so many deviations.
constexpr double kPossibleElongation = 3.0;

/// Sum of squares of the B-spline's weights, in the mean over positions, along one axis.
constexpr double kSplineSquare = 151.0 / 315.0;

/// By what the kernel and the pixels blur the scene, scene pixels squared.
double SamplingVariance(bool is_wide) {
  return (is_wide ? 4.0 : 1.0) * kSplineVariance + kPixelVariance;
}

/// By what the samples are softer than the pattern's values at the same blur, pattern pixels squared.
double SamplingBlur(const Buffers& buffers, const StripFit& fit) {
  const double scale = AtLevel(fit.scene_from_pattern, fit.level).scale;
  return SamplingVariance(buffers.source.is_wide) / (scale * scale) - SamplingVariance(false);
}

std::size_t ChooseStrip(const RefinementModel& model, double blur, std::size_t strip) {
  while (strip + 1 < kNumStrips && blur > kSofterFrom[strip])
    ++strip;
  while (strip > 0 && blur < kSharperFrom[strip - 1])
    --strip;
  while (strip > 0 && model.strips[strip].num_pixels == 0)
    --strip;
  return strip;
}

LevelArrays ArraysOf(const BlurLevel& level) {
  return {level.value.data(), level.dx.data(),  level.dy.data(),
          level.dxx.data(),   level.dxy.data(), level.dyy.data()};
}

/// Fills in the pattern's columns at a blur.
void BlendLevels(const RefinementModel& model, const Strip& strip, double blur,
                 const StripKernels& kernels, Buffers& buffers) {
  // What is blurred more than the kernel alone does it looks like a Gaussian again.
  const bool is_wide = buffers.source.is_wide && !strip.wide_levels.empty() &&
                       blur <= strip.wide_levels.back().variance;
  const std::vector<BlurLevel>& levels = is_wide ? strip.wide_levels : strip.levels;
  std::size_t high = 1;
  while (high + 1 < levels.size() && blur > levels[high].variance)
    ++high;
  const BlurLevel& a = levels[high - 1];
  const BlurLevel& b = levels[high];
  const double share = (blur - a.variance) / (b.variance - a.variance);
  const auto pointers = buffers.ColumnPointers();
  kernels.blend(ArraysOf(a), ArraysOf(b), static_cast<float>(share), strip.x.data(), strip.y.data(),
                static_cast<float>(1.0 / model.radius), strip.Size(), pointers.data());
}

/// Fills in the pattern's columns for a disk or a line.
void BlurPattern(const RefinementModel& model, const Strip& strip, const StripFit& fit,
                 double sampling, const StripKernels& kernels, Buffers& buffers) {
  if (fit.shape == BlurShape::kLine) {
    MakeLineKernel(LineOf(fit.moments), sampling, buffers.blur_kernel);
  } else {
    MakeDiskKernel(fit.moments.round, sampling, buffers.blur_kernel);
  }
  Blur(model.image, model.width, model.height, buffers.blur_kernel, buffers.padded,
       buffers.blurred);
  SplineValues(buffers.blurred, strip, buffers.blurred_level);
  const LevelArrays arrays = ArraysOf(buffers.blurred_level);
  const auto pointers = buffers.ColumnPointers();
  kernels.blend(arrays, arrays, 0.0F, strip.x.data(), strip.y.data(),
                static_cast<float>(1.0 / model.radius), strip.Size(), pointers.data());
}

/// Counts each stretch's pixels in the scene; returns their sum.
int CountPixels(const Strip& strip, Buffers& buffers) {
  int total = 0;
  for (std::size_t t = 0; t < strip.stretches.size(); ++t) {
    const Stretch& stretch = strip.stretches[t];
    int count = 0;
    for (int k = stretch.first; k < stretch.first + stretch.count; ++k) {
      const auto i = static_cast<std::size_t>(k);
      count += strip.presence[i] * buffers.inside[i] > 0.0F ? 1 : 0;
    }
    buffers.num_pixels[t] = count;
    total += count;
  }
  return total;
}

using SumFunction = decltype(StripKernels::sum_moments);

void SumStretches(const Strip& strip, SumFunction sum_moments, Buffers& buffers) {
  const auto pointers = buffers.ColumnPointers();
  for (std::size_t t = 0; t < strip.stretches.size(); ++t) {
    StretchSums& sums = buffers.sums[t];
    sum_moments(pointers.data(), buffers.weights.data(), strip.stretches[t].first,
                strip.stretches[t].count, &sums.at[0][0]);
    for (int i = 0; i < kNumColumns; ++i) {
      for (int j = 0; j < i; ++j)
        sums.at[i][j] = sums.at[j][i];
    }
  }
}

void FindResiduals(const Strip& strip, const StripKernels& kernels, const PoseSolution& solution,
                   Buffers& buffers) {
  const auto pointers = buffers.ColumnPointers();
  for (std::size_t t = 0; t < strip.stretches.size(); ++t) {
    const StretchLight& light = buffers.lights[t];
    float factors[kNumColumns] = {};
    for (int i = 0; i < kPattern; ++i)
      factors[i] = static_cast<float>(light.derivative_gain * solution.by_column[i]);
    factors[kPattern] = static_cast<float>(light.gain);
    factors[kOne] = static_cast<float>(light.bias);
    kernels.find_residuals(pointers.data(), factors, strip.stretches[t].first,
                           strip.stretches[t].count, buffers.residuals.data());
  }
}

void WeighAlike(const Strip& strip, Buffers& buffers) {
  for (std::size_t i = 0; i < buffers.weights.size(); ++i)
    buffers.weights[i] = strip.presence[i] * buffers.inside[i];
}

void FindNoise(const Strip& strip, double gain, StripFit& fit, Buffers& buffers) {
  const auto pointers = buffers.ColumnPointers();
  const double least = kRoundingVariance * kSplineSquare * kSplineSquare * (1.0 + gain * gain);
  fit.noise_before = fit.noise;
  fit.noise = FindResidualNoise(strip, buffers.lights, pointers.data(), buffers.residuals.data(),
                                buffers.inside.data(), gain, -buffers.source.offset, least);
}

/// Weighs the pixels by their residuals, against the noise.
void Weigh(const Strip& strip, const StripKernels& kernels, double gain, const StripFit& fit,
           Buffers& buffers) {
  const auto pointers = buffers.ColumnPointers();
  const double square = gain * gain;
  PixelNoise noise = {};
  noise.base = static_cast<float>(fit.noise.base);
  noise.per_grey = static_cast<float>(fit.noise.per_grey);
  noise.per_slope = static_cast<float>(kMismatchShare * fit.noise.per_slope * square);
  noise.mismatch =
      static_cast<float>((fit.noise.per_slope + kFreeMismatch * kFreeMismatch) * square);
  noise.inverse_reach_square = static_cast<float>(1.0 / (kReach * kReach));
  noise.grey_offset = static_cast<float>(buffers.source.offset);
  kernels.find_weights(pointers.data(), buffers.residuals.data(), strip.presence.data(),
                       buffers.inside.data(), noise, strip.Size(), buffers.weights.data());
}

FittedColumns ColumnsToFit(const RefinementOptions& options, bool line_blur) {
  FittedColumns fitted;
  for (const Column column : {kOne, kPattern, kMoveX, kMoveY})
    fitted.Add(column);
  if (options.fit_angle) fitted.Add(kTurn);
  if (options.fit_scale) fitted.Add(kGrow);
  fitted.Add(kRoundBlur);
  if (line_blur) {
    fitted.Add(kAxisBlur);
    fitted.Add(kDiagonalBlur);
  }
  return fitted;
}

/// Share of the scene's weighted variation along the outline that the solution explains, noise left
/// out.
double ExplainedShare(const StripFit& fit, const Buffers& buffers) {
  double whole = 0.0;
  double left = 0.0;
  double noise = 0.0;
  for (std::size_t t = 0; t < buffers.sums.size(); ++t) {
    if (!(buffers.lights[t].trust > 0.0)) continue;
    whole += buffers.sums[t].SceneSpread();
    left += LeftOver(buffers.sums[t], fit.solution, buffers.lights[t]);
    noise += buffers.num_pixels[t];
  }
  whole -= noise;
  left -= noise;
  return whole > 0.0 ? std::clamp(1.0 - left / whole, 0.0, 1.0) : 0.0;
}

/// How uncertain noise alone leaves the corners, roughly: pattern pixels.
double NoiseDeviation(const StripFit& fit) {
  double square = 0.0;
  for (int i = 0; i < fit.solution.fitted.count; ++i) {
    if (fit.solution.fitted.columns[i] < kRoundBlur) square += fit.solution.inverse.at[i][i];
  }
  return std::sqrt(fit.correlation * square);
}

double RmsResidual(const Buffers& buffers) {
  double square = 0.0;
  double weight = 0.0;
  for (std::size_t i = 0; i < buffers.residuals.size(); ++i) {
    const auto residual = static_cast<double>(buffers.residuals[i]);
    square += static_cast<double>(buffers.weights[i]) * residual * residual;
    weight += static_cast<double>(buffers.weights[i]);
  }
  return weight > 0.0 ? std::sqrt(square / weight) : 0.0;
}

double SignAsked(EdgePolarity polarity) {
  return polarity == EdgePolarity::kSame ? 1.0 : polarity == EdgePolarity::kReversed ? -1.0 : 0.0;
}

/// Sums up the stretches with the weights there are, and judges each one against the others.
void JudgeScene(const Strip& strip, const StripKernels& kernels, const RefinementOptions& options,
                StripFit& fit, Buffers& buffers) {
  SumStretches(strip,
               fit.shape == BlurShape::kLine ? kernels.sum_moments : kernels.sum_round_moments,
               buffers);
  FitStretches(buffers.sums, buffers.num_pixels, buffers.fits);
  fit.consensus = JudgeStretches(buffers.fits, SignAsked(options.polarity),
                                 options.polarity == EdgePolarity::kPerStretch, buffers.lights,
                                 buffers.medians);
  for (std::size_t t = 0; t < buffers.lights.size(); ++t) {
    buffers.lights[t].is_free = strip.stretches[t].at_mask_border;
    if (!(buffers.sums[t].Weight() > 0.0)) buffers.lights[t].trust = 0.0;
  }
}

/// Solves for the pose with the sums and the judgement there are.
void Solve(const RefinementOptions& options, const LightPrior& prior, StripFit& fit,
           Buffers& buffers) {
  const bool has_own = prior.gain_precision < std::numeric_limits<double>::infinity();
  for (std::size_t t = 0; t < buffers.lights.size(); ++t) {
    StretchLight& light = buffers.lights[t];
    light.derivative_gain = has_own || light.is_free ? buffers.fits[t].gain : fit.consensus.gain;
  }
  fit.solution = SolvePose(buffers.sums, ColumnsToFit(options, fit.shape == BlurShape::kLine),
                           prior, buffers.lights);
  FitLights(buffers.sums, fit.solution, prior, buffers.lights);
  for (StretchLight& light : buffers.lights) {
    // A stretch that was left out may come back where it fits the others' light.
    if (light.trust > 0.0) continue;
    light.gain = fit.consensus.gain;
    light.bias = fit.consensus.bias;
  }
}

/// Gives all stretches the light that they have in common.
void ShareLight(const StripFit& fit, Buffers& buffers) {
  for (StretchLight& light : buffers.lights)
    light = {0.0, fit.solution.by_column[kPattern], fit.solution.by_column[kOne], false, 1.0};
}

/// Whether all stretches have the light that the last solution says they have in common.
bool HasCommonLight(const Strip& strip, const RefinementOptions& options, const StripFit& fit) {
  if (fit.has_own_light || fit.consensus.is_uneven) return false;
  if (options.polarity == EdgePolarity::kPerStretch) return false;
  return std::none_of(strip.stretches.begin(), strip.stretches.end(),
                      [](const Stretch& stretch) { return stretch.at_mask_border; });
}

/// Whether the scene shows the pattern's contrast, and says where it is.
bool IsDetermined(const StripFit& fit, const Buffers& buffers) {
  // What the pattern explains, in units of noise; by chance it is one for each stretch.
  double explained = 0.0;
  int num_stretches = 0;
  for (const StretchFit& stretch : buffers.fits) {
    explained += stretch.gain * stretch.gain * stretch.importance;
    num_stretches += stretch.num_pixels > 0 ? 1 : 0;
  }
  if (!(explained > kLeastEvidence * fit.correlation * num_stretches)) return false;

  const FittedColumns& fitted = fit.solution.fitted;
  for (int i = 0; i < fitted.count; ++i) {
    if (!std::isfinite(fit.solution.unknowns[i])) return false;
    const bool is_shift = fitted.columns[i] == kMoveX || fitted.columns[i] == kMoveY;
    if (is_shift && !(fit.solution.inverse.at[i][i] > 0.0)) return false;
  }
  return std::isfinite(fit.consensus.gain) && fit.consensus.gain != 0.0;
}

/// exp(-step), for a step of the pattern against itself.
Similarity StepBack(const PoseSolution& solution, double share, double radius) {
  const double growth = share * solution.by_column[kGrow] / radius;
  return {-share * solution.by_column[kMoveX], -share * solution.by_column[kMoveY],
          -share * solution.by_column[kTurn] / radius, (1.0 - 0.5 * growth) / (1.0 + 0.5 * growth)};
}

/// Moves the fit by its solution, no further than the strip is wide.
void TakeStep(const RefinementModel& model, double longest, StripFit& fit) {
  double square = 0.0;
  for (const Column column : {kMoveX, kMoveY, kTurn, kGrow})
    square += fit.solution.by_column[column] * fit.solution.by_column[column];
  fit.step_before_px = fit.step_px;
  fit.step_px = std::sqrt(square);
  const double share = fit.step_px > longest ? longest / fit.step_px : 1.0;
  fit.scene_from_pattern = fit.scene_from_pattern * StepBack(fit.solution, share, model.radius);
  const BlurMoments step = {share * fit.solution.by_column[kRoundBlur],
                            share * fit.solution.by_column[kAxisBlur],
                            share * fit.solution.by_column[kDiagonalBlur]};
  fit.moments.round += step.round;
  fit.moments.axis += step.axis;
  fit.moments.diagonal += step.diagonal;
  fit.blur_step = std::abs(step.round) + std::abs(step.axis) + std::abs(step.diagonal);
}

/// By how much the blur differs between the directions, pattern pixels squared.
struct Elongation {
  double axis;
  double diagonal;
  double size;
  double deviation;
};

Elongation MeasureElongation(const RefinementModel& model, const RefinementOptions& options,
                             Buffers& buffers, const StripFit& fit) {
  const StripKernels& kernels = StripKernelsOf(ActiveSimdLevel());
  SumStretches(StripOf(model, fit), kernels.sum_moments, buffers);
  const PoseSolution solution =
      SolvePose(buffers.sums, ColumnsToFit(options, true), fit.prior, buffers.lights);
  const int last = solution.fitted.count - 1;
  Elongation elongation;
  elongation.axis = solution.by_column[kAxisBlur];
  elongation.diagonal = solution.by_column[kDiagonalBlur];
  elongation.size =
      std::sqrt(elongation.axis * elongation.axis + elongation.diagonal * elongation.diagonal);
  elongation.deviation = std::sqrt(fit.correlation * (solution.inverse.at[last - 1][last - 1] +
                                                      solution.inverse.at[last][last]));
  return elongation;
}

double LeastElongation(const StripFit& fit) {
  return kLeastElongation + kElongationByBlur * (std::max(fit.blur, 0.0) + kOwnBlur);
}

}  // namespace

const Strip& StripOf(const RefinementModel& model, const StripFit& fit) {
  const Strip& preview = model.previews[fit.strip];
  return fit.is_preview && preview.num_pixels > 0 ? preview : model.strips[fit.strip];
}

bool MayHaveLineBlur(const RefinementModel& model, const RefinementOptions& options,
                     Buffers& buffers, const StripFit& fit) {
  const Elongation elongation = MeasureElongation(model, options, buffers, fit);
  return elongation.size + kPossibleElongation * elongation.deviation > LeastElongation(fit);
}

bool FindLineBlur(const RefinementModel& model, const RefinementOptions& options, Buffers& buffers,
                  StripFit& fit) {
  const Elongation elongation = MeasureElongation(model, options, buffers, fit);
  if (elongation.size < LeastElongation(fit)) return false;
  if (elongation.size < kSureElongation * elongation.deviation) return false;
  fit.shape = BlurShape::kLine;
  // A round blur stands in for the mean of the directions; the line may take as much in one of them.
  fit.moments.axis = elongation.axis;
  fit.moments.diagonal = elongation.diagonal;
  return true;
}

bool HasAliasedEdges(const RefinementModel& model, const StripFit& fit) {
  if (fit.noise.steep_ratio > kAliasedRatio) return true;
  const bool is_sharp_scene = fit.strip == 0;  // a blurred one has nothing left to alias with
  return model.has_aliased_edges && is_sharp_scene && NoiseDeviation(fit) < kAliasingError;
}

double NoiseCorrelation(const Strip& strip, double scale_at_level, bool is_wide) {
  const double kernel_area = (is_wide ? 4.0 : 1.0) / (kSplineSquare * kSplineSquare);
  const double pixel_area = strip.thinning * scale_at_level * scale_at_level;
  return std::max(kernel_area / pixel_area, 1.0);
}

void MeasureResiduals(const RefinementModel& model, StripFit& fit, Buffers& buffers) {
  FindResiduals(StripOf(model, fit), StripKernelsOf(ActiveSimdLevel()), fit.solution, buffers);
  fit.explained_share = ExplainedShare(fit, buffers);
  fit.rms_residual = RmsResidual(buffers);
}

double SupportOf(const Buffers& buffers) {
  double support = 0.0;
  for (const StretchSums& sums : buffers.sums)
    support += sums.at[kMoveX][kMoveX] + sums.at[kMoveY][kMoveY];
  return support;
}

double SupportAt(const Strip& strip, const Similarity& scene_from_pattern, const StripFit& fit,
                 Buffers& buffers) {
  const StripKernels& kernels = StripKernelsOf(ActiveSimdLevel());
  SampleScene(buffers.source, scene_from_pattern, kernels, strip, buffers.columns[kScene].data(),
              buffers.inside.data());
  for (StretchLight& light : buffers.lights)
    light.derivative_gain = 0.0;
  FindResiduals(strip, kernels, fit.solution, buffers);
  Weigh(strip, kernels, fit.consensus.gain, fit, buffers);
  SumStretches(strip, kernels.sum_round_moments, buffers);
  return SupportOf(buffers);
}

void SumAlike(const Strip& strip, Buffers& buffers) {
  WeighAlike(strip, buffers);
  SumStretches(strip, StripKernelsOf(ActiveSimdLevel()).sum_light_moments, buffers);
}

RefinementOutcome ImproveFit(const RefinementModel& model, const RefinementOptions& options,
                             bool is_first, Buffers& buffers, StripFit& fit) {
  const StripKernels& kernels = StripKernelsOf(ActiveSimdLevel());
  const double sampling = SamplingBlur(buffers, fit);
  fit.blur = std::clamp(sampling + fit.moments.round, kLeastBlur, kMostBlur);
  fit.sampled_pose = fit.scene_from_pattern;
  const Strip* const last = fit.sampled_strip;
  fit.strip = ChooseStrip(model, fit.blur, fit.strip);
  const Strip& strip = StripOf(model, fit);
  fit.sampled_strip = &strip;
  const bool is_other = last != &strip;
  const bool is_new = is_first || (is_other && !HasCommonLight(strip, options, fit));
  if (strip.num_pixels < kLeastPixels) return RefinementOutcome::kTooFewPixels;
  buffers.Resize(strip);
  if (fit.shape == BlurShape::kRound) {
    BlendLevels(model, strip, fit.blur, kernels, buffers);
  } else {
    BlurPattern(model, strip, fit, sampling, kernels, buffers);
  }
  SampleScene(buffers.source, fit.scene_from_pattern, kernels, strip,
              buffers.columns[kScene].data(), buffers.inside.data());
  const int num_pixels = CountPixels(strip, buffers);
  if (num_pixels < kLeastPixels) return RefinementOutcome::kTooFewPixels;
  const double correlation = fit.correlation = NoiseCorrelation(
      strip, AtLevel(fit.scene_from_pattern, fit.level).scale, buffers.source.is_wide);

  constexpr double kNever = std::numeric_limits<double>::infinity();
  if (is_new) {
    WeighAlike(strip, buffers);
    fit.prior = fit.has_own_light ? LightPrior{0.0, 0.0} : LightPrior{kNever, kNever};
    JudgeScene(strip, kernels, options, fit, buffers);
    Solve(options, fit.consensus.is_uneven ? LightPrior{0.0, 0.0} : fit.prior, fit, buffers);
  } else if (is_other) {
    ShareLight(fit, buffers);
  } else {
    for (auto& light : buffers.lights)
      light.derivative_gain = 0.0;
  }
  FindResiduals(strip, kernels, fit.solution, buffers);
  FindNoise(strip, fit.consensus.gain, fit, buffers);
  Weigh(strip, kernels, fit.consensus.gain, fit, buffers);
  JudgeScene(strip, kernels, options, fit, buffers);
  fit.is_obstructed = fit.consensus.is_uneven;
  Solve(options, fit.prior, fit, buffers);
  if (!fit.has_own_light) {
    fit.prior = FindLightPrior(buffers.sums, buffers.fits, fit.consensus, buffers.lights,
                               correlation, buffers.medians);
    if (NeedsOwnLight(buffers.sums, buffers.fits, fit.solution, buffers.lights, correlation,
                      buffers.medians)) {
      fit.has_own_light = true;
      fit.prior = {0.0, 0.0};
    }
    const bool has_prior = fit.prior.gain_precision < kNever || fit.prior.bias_precision < kNever;
    if (has_prior) Solve(options, fit.prior, fit, buffers);
  }
  if (!IsDetermined(fit, buffers)) return RefinementOutcome::kNotDetermined;
  TakeStep(model, 3.0, fit);
  return RefinementOutcome::kRefined;
}

}  // namespace orvandel::shape
