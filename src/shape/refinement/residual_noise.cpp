#include "shape/refinement/residual_noise.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstring>

namespace orvandel::shape {
namespace {

/// Deviation of a normal distribution by the median of its sizes.
constexpr double kDeviationByMedian = 1.4826;

/// Bright flat pixels must be so much noisier than dark ones for a slope to be believed: medians of a few
/// hundred pixels differ by a fifth by chance.
constexpr double kLeastNoiseRatio = 1.4;
constexpr int kLeastFlatPixels = 100;

double VarianceOf(const SizeHistogram& sizes) {
  const double deviation = kDeviationByMedian * sizes.Median();
  return deviation * deviation;
}

double MeanGrey(const SizeHistogram& sizes) {
  return sizes.total > 0 ? sizes.grey_sum / sizes.total : 0.0;
}

/// Sizes of residuals where the image is flat, and where it is steep.
struct ResidualSizes {
  SizeHistogram dark;
  SizeHistogram bright;
  SizeHistogram steep;
  double slope_sum = 0.0;  ///< squared gradients of the pattern at the steep pixels
};

void AddStretch(const Strip& strip, const Stretch& stretch, const float* const* columns,
                const float* residuals, const float* inside, ResidualSizes& sizes) {
  for (int k = stretch.first; k < stretch.first + stretch.count; ++k) {
    const auto i = static_cast<std::size_t>(k);
    const Steepness steepness = strip.steepness[i];
    if (steepness == Steepness::kMiddle || !(strip.presence[i] * inside[i] > 0.0F)) continue;
    SizeHistogram& histogram = steepness == Steepness::kSteep      ? sizes.steep
                               : steepness == Steepness::kFlatDark ? sizes.dark
                                                                   : sizes.bright;
    histogram.Add(std::abs(residuals[i]), columns[kScene][i]);
    if (steepness != Steepness::kSteep) continue;
    const auto gx = static_cast<double>(columns[kMoveX][i]);
    const auto gy = static_cast<double>(columns[kMoveY][i]);
    sizes.slope_sum += gx * gx + gy * gy;
  }
}

}  // namespace

/// The exponent and the first four bits of the fraction of a float number the bins; the first is that of
/// 2^-20 and below.
void SizeHistogram::Add(float size, float grey) {
  constexpr int kShift = 23 - 4;
  constexpr int kFirst = (127 - 20) << 4;
  std::uint32_t bits = 0;
  std::memcpy(&bits, &size, sizeof bits);
  ++counts[std::clamp(static_cast<std::int32_t>(bits >> kShift) - kFirst, 0, kNumBins - 1)];
  ++total;
  grey_sum += static_cast<double>(grey);
}

double SizeHistogram::Median() const {
  if (total == 0) return 0.0;
  const double half = 0.5 * total;
  int below = 0;
  int bin = 0;
  while (below + counts[bin] < half)
    below += counts[bin++];
  if (bin == 0) return 0.0;
  const double octave = std::ldexp(1.0, bin / kBinsPerOctave - 20);
  const double fraction = (half - below) / counts[bin];
  return octave * (1.0 + (bin % kBinsPerOctave + fraction) / kBinsPerOctave);
}

ResidualNoise FindResidualNoise(const Strip& strip, std::span<const StretchLight> lights,
                                const float* const* columns, const float* residuals,
                                const float* inside, double gain, double black, double least) {
  ResidualSizes sizes;
  for (std::size_t t = 0; t < strip.stretches.size(); ++t) {
    if (lights[t].trust > 0.0)
      AddStretch(strip, strip.stretches[t], columns, residuals, inside, sizes);
  }
  auto& [dark, bright, steep, slope_sum] = sizes;
  if (gain < 0.0) std::swap(dark, bright);

  ResidualNoise noise;
  const double dark_variance = VarianceOf(dark);
  const double bright_variance = VarianceOf(bright);
  const double dark_grey = MeanGrey(dark) - black;
  const double bright_grey = MeanGrey(bright) - black;
  const double num_flat = dark.total + bright.total;
  if (num_flat > 0.0)
    noise.base = (dark.total * dark_variance + bright.total * bright_variance) / num_flat;
  if (std::min(dark.total, bright.total) >= kLeastFlatPixels && dark_grey >= 0.0 &&
      bright_variance > kLeastNoiseRatio * std::max(dark_variance, least) &&
      bright_grey > dark_grey) {
    // The dark end may not become negative.
    noise.per_grey = std::min((bright_variance - dark_variance) / (bright_grey - dark_grey),
                              bright_variance / bright_grey);
    noise.base = std::max(bright_variance - noise.per_grey * bright_grey, 0.0);
  }
  noise.base = std::max(noise.base, least);
  if (steep.total > 0 && slope_sum > 0.0) {
    const double flat = noise.base + noise.per_grey * std::max(MeanGrey(steep) - black, 0.0);
    const double slope = slope_sum / steep.total * gain * gain;
    noise.steep = VarianceOf(steep);
    if (flat > 0.0) noise.steep_ratio = std::sqrt(noise.steep / flat);
    noise.per_slope = slope > 0.0 ? std::max(noise.steep - flat, 0.0) / slope : 0.0;
  }
  return noise;
}

}  // namespace orvandel::shape
