#include "shape/refinement/light_variation.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace orvandel::shape {
namespace {

constexpr double kNever = std::numeric_limits<double>::infinity();

/// A stretch whose gain is so far from the others' shows something else.
constexpr double kLeastGainRatio = 0.25;
constexpr double kMostGainRatio = 4.0;
/// Nor does one that explains little of the scene there and leaves much more than the others.
constexpr double kLeastExplained = 0.35;
constexpr double kMostResidualRatio = 3.0;
/// From this many times the median residual on, a stretch weighs less.
constexpr double kDoubtfulResidualRatio = 1.8;

/// Gains that differ by more than this, or more stretches that show something else, make a start with
/// common gain and bias unsafe.
constexpr double kEvenGainSpread = 0.06;
constexpr double kFewBad = 0.03;

/// Median of the square of a normal deviate.
constexpr double kMedianSquare = 0.4549;

/// Where own light explains less than this beyond common light, it is noise that it explains.
constexpr double kOwnLightRatio = 1.35;

bool HasWrongSign(double gain, double sign) {
  return gain * sign <= 0.0;
}

/// Median of values of the stretches that count, weighted by importance.
template <typename Function>
double MedianOver(std::span<const StretchFit> fits, std::span<const StretchLight> lights,
                  Function&& value_of, MedianScratch& scratch) {
  scratch.values.clear();
  for (std::size_t t = 0; t < fits.size(); ++t) {
    if (fits[t].num_pixels > 0 && lights[t].trust > 0.0)
      scratch.values.push_back({value_of(t), fits[t].importance});
  }
  return WeightedMedian(scratch.values);
}

double SignOfMost(std::span<const StretchFit> fits) {
  double positive = 0.0;
  double negative = 0.0;
  for (const StretchFit& fit : fits)
    (fit.gain > 0.0 ? positive : negative) += fit.importance * fit.explained;
  return positive >= negative ? 1.0 : -1.0;
}

bool ShowsPattern(const StretchFit& fit, double gain, double residual) {
  const double ratio = std::abs(fit.gain / gain);
  if (!(ratio > kLeastGainRatio && ratio < kMostGainRatio)) return false;
  return fit.explained >= kLeastExplained || fit.residual <= kMostResidualRatio * residual;
}

/// Variance of a value among the stretches beyond what its own uncertainty makes; 0 where that explains
/// all.
double ExcessVariance(std::vector<WeightedValue>& squares, std::vector<WeightedValue>& ratios) {
  const auto count = static_cast<double>(ratios.size());
  if (count < 3.0) return 0.0;
  // 3.75 deviations of the median of squares of so many normal deviates.
  const double limit = 1.0 + 3.75 * std::sqrt(2.0 / count);
  const double ratio = WeightedMedian(ratios) / kMedianSquare;
  if (!(ratio > limit)) return 0.0;
  return WeightedMedian(squares) / kMedianSquare * (1.0 - 1.0 / ratio);
}

}  // namespace

StretchConsensus JudgeStretches(std::span<const StretchFit> fits, double sign, bool any_sign,
                                std::span<StretchLight> lights, MedianScratch& scratch) {
  StretchConsensus consensus;
  const double common_sign = sign != 0.0 ? sign : SignOfMost(fits);
  double importance = 0.0;
  double same = 0.0;
  for (std::size_t t = 0; t < fits.size(); ++t) {
    const bool is_wrong = HasWrongSign(fits[t].gain, common_sign);
    importance += fits[t].importance;
    if (!is_wrong) same += fits[t].importance;
    lights[t].trust = fits[t].num_pixels > 0 && (any_sign || !is_wrong) ? 1.0 : 0.0;
  }
  if (importance > 0.0) consensus.same_sign_share = same / importance;
  consensus.gain =
      common_sign *
      MedianOver(
          fits, lights, [&](std::size_t t) { return std::abs(fits[t].gain); }, scratch);
  consensus.bias = MedianOver(
      fits, lights, [&](std::size_t t) { return fits[t].bias; }, scratch);
  consensus.residual = MedianOver(
      fits, lights, [&](std::size_t t) { return fits[t].residual; }, scratch);
  double good = 0.0;
  for (std::size_t t = 0; t < fits.size(); ++t) {
    if (lights[t].trust > 0.0 && !ShowsPattern(fits[t], consensus.gain, consensus.residual))
      lights[t].trust = 0.0;
    if (lights[t].trust <= 0.0) continue;
    good += fits[t].importance;
    const double ratio = fits[t].residual / (kDoubtfulResidualRatio * consensus.residual);
    if (ratio > 1.0) lights[t].trust = 1.0 / ratio;
  }
  const double spread = MedianOver(
      fits, lights,
      [&](std::size_t t) { return std::abs(std::abs(fits[t].gain / consensus.gain) - 1.0); },
      scratch);
  consensus.is_uneven = spread > kEvenGainSpread || good < (1.0 - kFewBad) * importance;
  return consensus;
}

LightPrior FindLightPrior(std::span<const StretchSums> sums, std::span<const StretchFit> fits,
                          const StretchConsensus& consensus, std::span<const StretchLight> lights,
                          double correlation, MedianScratch& scratch) {
  double precisions[2];
  for (const bool for_gain : {true, false}) {
    scratch.values.clear();
    scratch.ratios.clear();
    for (std::size_t t = 0; t < fits.size(); ++t) {
      if (fits[t].num_pixels == 0 || !(lights[t].trust > 0.0)) continue;
      const double mean = sums[t].PatternMean();
      const double difference =
          for_gain ? fits[t].gain - consensus.gain
                   : fits[t].bias + fits[t].gain * mean - (consensus.bias + consensus.gain * mean);
      const double variance =
          correlation * (for_gain ? fits[t].gain_variance : fits[t].bias_variance);
      scratch.values.push_back({difference * difference, 1.0});
      scratch.ratios.push_back({difference * difference / variance, 1.0});
    }
    const double excess = ExcessVariance(scratch.values, scratch.ratios);
    precisions[for_gain ? 0 : 1] = excess > 0.0 ? correlation / excess : kNever;
  }
  return {precisions[0], precisions[1]};
}

bool NeedsOwnLight(std::span<const StretchSums> sums, std::span<const StretchFit> fits,
                   const PoseSolution& solution, std::span<const StretchLight> lights,
                   double correlation, MedianScratch& scratch) {
  scratch.values.clear();
  for (std::size_t t = 0; t < sums.size(); ++t) {
    if (fits[t].num_pixels == 0 || !(lights[t].trust > 0.0)) continue;
    double factors[kNumColumns] = {};
    for (int i = 0; i < kScene; ++i)
      factors[i] = -solution.by_column[i] * (i < kPattern ? lights[t].derivative_gain : 1.0);
    factors[kScene] = 1.0;
    double left[kNumColumns] = {};
    double square = 0.0;
    for (int i = 0; i < kNumColumns; ++i) {
      for (int j = 0; j < kNumColumns; ++j)
        left[i] += factors[j] * sums[t].at[i][j];
      square += factors[i] * left[i];
    }
    const double pattern = left[kPattern] - sums[t].PatternMean() * left[kOne];
    const double spread = sums[t].PatternSpread();
    const double own = square - left[kOne] * left[kOne] / sums[t].Weight() -
                       (spread > 0.0 ? pattern * pattern / spread : 0.0);
    // Two of the stretch's independent values went into its own gain and bias.
    const double independent = fits[t].num_pixels / correlation;
    if (independent <= 4.0 || !(own > 0.0)) continue;
    scratch.values.push_back({square / own * (1.0 - 2.0 / independent), 1.0});
  }
  return scratch.values.size() >= 3 && WeightedMedian(scratch.values) > kOwnLightRatio;
}

}  // namespace orvandel::shape
