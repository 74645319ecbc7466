#include "shape/refinement/refinement_model.h"

#include <algorithm>
#include <cmath>

#include "shape/refinement/gaussian_blur.h"
#include "shape/refinement/image_noise.h"
#include "shape/refinement/rounding_runs.h"
#include "shape/refinement/spline_stencils.h"
#include "shape/refinement/strip_selection.h"
#include "shape/refinement/turn_information.h"
#include "shape/refinement/wide_kernel.h"

namespace orvandel::shape {
namespace {

/// An image with less noise than that has rounding errors that repeat.
constexpr double kNoNoise = 0.01;

struct StripPlan {
  double edge_ratio;  ///< of the Gaussian that edges are looked for with (see MakeGaussianTaps)
  double half_width;  ///< pixels: where a step of that blur has decayed
  int margin;         ///< pixels to the image's border
  int num_levels;
  double level_ratios[5];  ///< of the blur ladder; a scene between two levels is interpolated
};
constexpr std::array<StripPlan, kNumStrips> kPlans = {{
    {0.0, 3.0, 3, 3, {0.0, 0.1914, 0.5006}},                        // sigma 0 .55 .85
    {0.6592, 4.6, 4, 4, {0.4111, 0.6615, 0.8007, 0.8707}},          // .75 1.1 1.5 1.9
    {0.9048, 8.2, 5, 5, {0.8411, 0.9018, 0.9423, 0.9622, 0.9767}},  // 1.7 2.2 2.9 3.6 4.6
}};

template <typename Pixel>
int MeanGrey(const ImageViewOf<Pixel>& image) {
  double sum = 0.0;
  for (int y = 0; y < image.height; ++y) {
    for (int x = 0; x < image.width; ++x)
      sum += image.Row(y)[x];
  }
  return static_cast<int>(sum / (static_cast<double>(image.width) * image.height));
}

template <typename Pixel>
FloatImage WithoutOffset(const ImageViewOf<Pixel>& image, int offset) {
  FloatImage result;
  result.Resize(image.width, image.height);
  for (int y = 0; y < image.height; ++y) {
    for (int x = 0; x < image.width; ++x)
      result.Row(y)[x] = static_cast<float>(image.Row(y)[x] - offset);
  }
  return result;
}

PixelSet PixelsOf(const ImageView8& mask, int width, int height) {
  PixelSet belongs(static_cast<std::size_t>(width) * static_cast<std::size_t>(height), 1);
  if (mask.IsEmpty()) return belongs;
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x)
      belongs[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
              static_cast<std::size_t>(x)] = mask.Row(y)[x] != 0 ? 1 : 0;
  }
  return belongs;
}

/// Half the diagonal of the box around the pixels that belong.
double RadiusOf(const PixelSet& belongs, int width, int height) {
  int left = width;
  int right = -1;
  int top = height;
  int bottom = -1;
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x) {
      if (belongs[static_cast<std::size_t>(y * width + x)] == 0) continue;
      left = std::min(left, x);
      right = std::max(right, x);
      top = std::min(top, y);
      bottom = y;
    }
  }
  if (right < left) return 1.0;
  const double across = right - left + 1;
  const double down = bottom - top + 1;
  return 0.5 * std::sqrt(across * across + down * down);
}

/// Noise deviation of a gradient component of the blurred image, by that of a pixel: the roots of the
/// sums of squared taps along and across the derivative.
double GradientGain(const BlurTaps& taps) {
  const int reach = static_cast<int>(taps.half.size()) - 1;
  const auto tap = [&](int k) {
    const int size = std::abs(k);
    return size <= reach ? static_cast<double>(taps.half[static_cast<std::size_t>(size)]) : 0.0;
  };
  double smooth = 0.0;
  double slope = 0.0;
  for (int k = -reach - 1; k <= reach + 1; ++k) {
    const double value = (tap(k - 1) + 4.0 * tap(k) + tap(k + 1)) / 6.0;
    const double difference = 0.5 * (tap(k - 1) - tap(k + 1));
    smooth += value * value;
    slope += difference * difference;
  }
  return std::sqrt(smooth * slope);
}

/// Two images that every level of blur needs again.
struct BlurBuffers {
  FloatImage between;
  FloatImage blurred;
};

void LearnStrip(const FloatImage& image, const PixelSet& belongs, Point origin,
                double noise_variance, const StripPlan& plan, BlurBuffers& buffers, Strip& strip,
                Strip& preview) {
  const BlurTaps taps = MakeGaussianTaps(plan.edge_ratio);
  Blur(image, taps, buffers.between, buffers.blurred);
  StripSelection selection;
  selection.noise_deviation = std::sqrt(noise_variance);
  selection.gradient_gain = GradientGain(taps);
  selection.edge_width = std::sqrt(taps.variance + kSplineVariance + kPixelVariance);
  selection.half_width = plan.half_width;
  selection.margin = plan.margin;
  SelectStrip(buffers.blurred, belongs, origin, selection, strip, preview);
  if (strip.num_pixels == 0) return;
  for (int k = 0; k < plan.num_levels; ++k) {
    const BlurTaps level_taps = MakeGaussianTaps(plan.level_ratios[k]);
    Blur(image, level_taps, buffers.between, buffers.blurred);
    for (Strip* const each : {&strip, &preview}) {
      BlurLevel& level = each->levels.emplace_back();
      level.variance = level_taps.variance;
      SplineValues(buffers.blurred, *each, level);
    }
  }
}

/// Scales at a pyramid level, a quarter of an octave apart, in the order of rising blur. Parts that are smaller
/// still have hardly an edge left that a kernel's shape could matter to.
constexpr std::array<double, 8> kWideScales = {
    1.4142135623730951, 1.189207115002721,  1.0, 0.8408964152537145,
    0.7071067811865476, 0.5946035575013605, 0.5, 0.42044820762685725};
/// Those that surround the blurs that each strip serves.
struct WideRange {
  std::size_t first;
  std::size_t last;
};
constexpr std::array<WideRange, kNumStrips> kWideRanges = {{{0, 2}, {1, 5}, {4, 7}}};

void LearnWideLevels(const FloatImage& image, BlurBuffers& buffers,
                     std::array<Strip, kNumStrips>& strips) {
  for (std::size_t i = 0; i < kWideScales.size(); ++i) {
    const BlurTaps taps = MakeWideKernelTaps(kWideScales[i]);
    Blur(image, taps, buffers.between, buffers.blurred);
    for (std::size_t k = 0; k < kNumStrips; ++k) {
      if (i < kWideRanges[k].first || i > kWideRanges[k].last || strips[k].num_pixels == 0)
        continue;
      BlurLevel& level = strips[k].wide_levels.emplace_back();
      level.variance = taps.variance;
      SplineValues(buffers.blurred, strips[k], level);
    }
  }
}

/// Whether the edges are sharper than the pixels' area and the B-spline leave them: then optics have not
/// kept frequencies out that alias. An edge of variance v has 1 / (2 v) times the squares of its slope as
/// squares of its curvature.
bool HasAliasedEdges(const Strip& strip, double noise_variance) {
  if (strip.num_pixels == 0) return false;
  const BlurLevel& level = strip.levels.front();
  double slopes = 0.0;
  double curvatures = 0.0;
  for (std::size_t i = 0; i < level.dx.size(); ++i) {
    const auto dx = static_cast<double>(level.dx[i] * strip.presence[i]);
    const auto dy = static_cast<double>(level.dy[i] * strip.presence[i]);
    const auto laplacian = static_cast<double>((level.dxx[i] + level.dyy[i]) * strip.presence[i]);
    slopes += dx * dx + dy * dy;
    curvatures += laplacian * laplacian;
  }
  // Noise adds 2 * 1/4 and 8 of a pixel's variance, by the sums of squares of the stencils' weights.
  slopes -= 0.5 * noise_variance * strip.num_pixels;
  curvatures -= 8.0 * noise_variance * strip.num_pixels;
  return slopes < 2.0 * (kSplineVariance + kPixelVariance) * curvatures;
}

/// Numbers the errors that the strip's pixels are made of.
///
/// @param runs  see FindRoundingRuns; empty where each pixel has an error of its own.
void NumberErrors(const FloatImage& image, const std::vector<std::int32_t>& runs, Strip& strip) {
  std::vector<std::int32_t> numbers(image.grey.size(), -1);
  strip.errors.reserve(9 * strip.x.size());
  for (std::size_t i = 0; i < strip.x.size(); ++i) {
    for (int place = 0; place < 9; ++place) {
      const int pixel =
          (strip.row[i] + place / 3 - 1) * image.width + strip.column[i] + place % 3 - 1;
      const auto at = static_cast<std::size_t>(pixel);
      const std::int32_t error = runs.empty() ? pixel : runs[at];
      std::int32_t& number = numbers[static_cast<std::size_t>(error)];
      if (number < 0) number = strip.num_errors++;
      strip.errors.push_back(number);
    }
  }
}

/// Looks where the image is soft enough for the pixels' grid not to feign an angle.
bool TellsAngle(const RefinementModel& model) {
  constexpr std::size_t kStrip = 1;
  constexpr std::size_t kLevel = 1;
  const Strip& strip = model.strips[kStrip];
  if (strip.num_pixels == 0) return true;
  const double gain = GradientGain(MakeGaussianTaps(kPlans[kStrip].level_ratios[kLevel]));
  return TellsAngle(strip, strip.levels[kLevel], gain * gain * model.noise_variance);
}

template <typename Pixel>
RefinementModel Learn(const ImageViewOf<Pixel>& pattern, const ImageView8& mask, Point origin) {
  RefinementModel model;
  model.origin = origin;
  if (pattern.IsEmpty()) return model;
  model.width = pattern.width;
  model.height = pattern.height;
  model.grey_offset = MeanGrey(pattern);
  FloatImage image = WithoutOffset(pattern, model.grey_offset);
  const PixelSet belongs = PixelsOf(mask, pattern.width, pattern.height);
  model.radius = RadiusOf(belongs, pattern.width, pattern.height);
  const double noise = EstimateNoiseVariance(image);
  model.noise_variance = std::max(noise, kRoundingVariance);
  const std::vector<std::int32_t> runs =
      noise < kNoNoise ? FindRoundingRuns(image) : std::vector<std::int32_t>();
  BlurBuffers buffers;
  for (std::size_t k = 0; k < kNumStrips; ++k)
    LearnStrip(image, belongs, origin, model.noise_variance, kPlans[k], buffers, model.strips[k],
               model.previews[k]);
  for (Strip& strip : model.strips) {
    if (strip.thinning < kSparseThinning || !runs.empty()) NumberErrors(image, runs, strip);
  }
  LearnWideLevels(image, buffers, model.strips);
  model.tells_angle = TellsAngle(model);
  model.has_aliased_edges = HasAliasedEdges(model.strips[0], noise);
  model.image = std::move(image.grey);
  return model;
}

}  // namespace

RefinementModel LearnRefinementModel(const ImageView& pattern, const ImageView8& mask,
                                     Point origin) {
  return std::visit([&](const auto& image) { return Learn(image, mask, origin); }, pattern);
}

}  // namespace orvandel::shape
