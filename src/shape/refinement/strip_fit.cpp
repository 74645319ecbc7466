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

/// Residuals weigh nothing from six deviations on: with Tukey's weights half as much already at 3.2.
constexpr double kReach = 6.0;
/// What the model does not fit at the edges counts fully for what is an outlier, and by this share for
/// weights: a full share gives all weight to the flat pixels, which say nothing.
constexpr double kMismatchShare = 0.3;
/// Edges may always be this far off, pattern pixels, before they are outliers.
constexpr double kFreeMismatch = 0.02;

constexpr double kRoundingVariance = 1.0 / 12.0;

/// Sum of squares of the B-spline's weights, in the mean over positions, along one axis.
constexpr double kSplineSquare = 151.0 / 315.0;

/// By what the kernel and the pixels blur the scene, scene pixels squared.
double SamplingVariance(bool is_wide) {
  return (is_wide ? 4.0 : 1.0) * kSplineVariance + kPixelVariance;
}

/// Variance by which the samples are softer than the pattern's values, pattern pixels squared.
double BlurOf(const Buffers& buffers, const StripFit& fit) {
  const double scale = AtLevel(fit.scene_from_pattern, fit.level).scale;
  const double blur = SamplingVariance(buffers.source.is_wide) / (scale * scale) -
                      SamplingVariance(false) + fit.blur_variance;
  return std::clamp(blur, kLeastBlur, kMostBlur);
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
  std::size_t high = 1;
  while (high + 1 < strip.levels.size() && blur > strip.levels[high].variance)
    ++high;
  const BlurLevel& a = strip.levels[high - 1];
  const BlurLevel& b = strip.levels[high];
  const double share = (blur - a.variance) / (b.variance - a.variance);
  const auto pointers = buffers.ColumnPointers();
  kernels.blend(ArraysOf(a), ArraysOf(b), static_cast<float>(share), strip.x.data(), strip.y.data(),
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

void SumStretches(const Strip& strip, const StripKernels& kernels, Buffers& buffers) {
  const auto pointers = buffers.ColumnPointers();
  for (std::size_t t = 0; t < strip.stretches.size(); ++t) {
    StretchSums& sums = buffers.sums[t];
    kernels.add_moments(pointers.data(), buffers.weights.data(), strip.stretches[t].first,
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

void WeighByResiduals(const Strip& strip, const StripKernels& kernels, double gain, StripFit& fit,
                      Buffers& buffers) {
  const auto pointers = buffers.ColumnPointers();
  fit.noise = FindResidualNoise(strip, pointers.data(), buffers.residuals.data(),
                                buffers.inside.data(), gain, -buffers.source.offset);
  // Rounding alone leaves so much, in scene and pattern.
  const double least = kRoundingVariance * kSplineSquare * kSplineSquare * (1.0 + gain * gain);
  fit.noise.base = std::max(fit.noise.base, least);
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

FittedColumns ColumnsToFit(const RefinementOptions& options) {
  FittedColumns fitted;
  for (const Column column : {kOne, kPattern, kMoveX, kMoveY})
    fitted.Add(column);
  if (options.fit_angle) fitted.Add(kTurn);
  if (options.fit_scale) fitted.Add(kGrow);
  fitted.Add(kRoundBlur);
  return fitted;
}

double SignAsked(EdgePolarity polarity) {
  return polarity == EdgePolarity::kSame ? 1.0 : polarity == EdgePolarity::kReversed ? -1.0 : 0.0;
}

/// Solves with the weights there are, after judging the stretches.
void Solve(const Strip& strip, const StripKernels& kernels, const RefinementOptions& options,
           const LightPrior& prior, StripFit& fit, Buffers& buffers) {
  SumStretches(strip, kernels, buffers);
  FitStretches(buffers.sums, buffers.num_pixels, buffers.fits);
  fit.consensus = JudgeStretches(buffers.fits, SignAsked(options.polarity),
                                 options.polarity == EdgePolarity::kPerStretch, buffers.lights,
                                 buffers.medians);
  const bool has_own = prior.gain_precision < std::numeric_limits<double>::infinity();
  for (std::size_t t = 0; t < buffers.lights.size(); ++t) {
    buffers.lights[t].derivative_gain = has_own ? buffers.fits[t].gain : fit.consensus.gain;
    if (!(buffers.sums[t].Weight() > 0.0)) buffers.lights[t].trust = 0.0;
  }
  fit.solution = SolvePose(buffers.sums, ColumnsToFit(options), prior, buffers.lights);
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
  fit.step_px = std::sqrt(square);
  const double share = fit.step_px > longest ? longest / fit.step_px : 1.0;
  fit.scene_from_pattern = fit.scene_from_pattern * StepBack(fit.solution, share, model.radius);
  const double before = fit.blur_variance;
  fit.blur_variance += share * fit.solution.by_column[kRoundBlur];
  fit.blur_step = fit.blur_variance - before;
}

}  // namespace

double NoiseCorrelation(const Strip& strip, double scale_at_level, bool is_wide) {
  const double kernel_area = (is_wide ? 4.0 : 1.0) / (kSplineSquare * kSplineSquare);
  const double pixel_area = strip.thinning * scale_at_level * scale_at_level;
  return std::max(kernel_area / pixel_area, 1.0);
}

bool ImproveFit(const RefinementModel& model, const RefinementOptions& options, bool is_first,
                Buffers& buffers, StripFit& fit) {
  const StripKernels& kernels = StripKernelsOf(ActiveSimdLevel());
  const double blur = BlurOf(buffers, fit);
  const std::size_t chosen = ChooseStrip(model, blur, fit.strip);
  const bool is_new = is_first || chosen != fit.strip;
  fit.strip = chosen;
  const Strip& strip = model.strips[chosen];
  if (strip.num_pixels < kLeastPixels) return false;
  buffers.Resize(strip);
  BlendLevels(model, strip, blur, kernels, buffers);
  SampleScene(buffers.source, fit.scene_from_pattern, kernels, strip,
              buffers.columns[kScene].data(), buffers.inside.data());
  const int num_pixels = CountPixels(strip, buffers);
  fit.pixels_in_scene = num_pixels;
  if (num_pixels < kLeastPixels) return false;
  const double correlation = NoiseCorrelation(
      strip, AtLevel(fit.scene_from_pattern, fit.level).scale, buffers.source.is_wide);

  constexpr double kNever = std::numeric_limits<double>::infinity();
  if (is_new) {
    WeighAlike(strip, buffers);
    fit.prior = {kNever, kNever};
    Solve(strip, kernels, options, fit.prior, fit, buffers);
    if (fit.consensus.is_uneven) Solve(strip, kernels, options, {0.0, 0.0}, fit, buffers);
  } else {
    for (std::size_t t = 0; t < buffers.lights.size(); ++t)
      buffers.lights[t].derivative_gain = 0.0;
  }
  FindResiduals(strip, kernels, fit.solution, buffers);
  WeighByResiduals(strip, kernels, fit.consensus.gain, fit, buffers);
  Solve(strip, kernels, options, fit.prior, fit, buffers);
  if (!fit.has_own_light) {
    fit.prior = FindLightPrior(buffers.sums, buffers.fits, fit.consensus, buffers.lights,
                               correlation, buffers.medians);
    if (NeedsOwnLight(buffers.sums, buffers.fits, fit.solution, buffers.lights, correlation,
                      buffers.medians)) {
      fit.has_own_light = true;
      fit.prior = {0.0, 0.0};
    }
    const bool has_prior = fit.prior.gain_precision < kNever || fit.prior.bias_precision < kNever;
    if (has_prior) Solve(strip, kernels, options, fit.prior, fit, buffers);
  }
  TakeStep(model, 3.0, fit);
  return true;
}

}  // namespace orvandel::shape
