#include "shape/refinement/shaped_blur.h"

#include <algorithm>
#include <cmath>

namespace orvandel::shape {
namespace {

/// Longer blur than this leaves nothing to fit; the kernel's size stays bounded.
constexpr double kMostExtent = 24.0;

/// Variance that three taps can add along an axis without a dip in the middle; negative ones sharpen.
constexpr double kMostVarianceStep = 0.4;
constexpr double kLeastVarianceStep = -0.2;
constexpr int kMostSteps = 24;
constexpr double kSmallVariance = 1e-3;

void Clear(int reach, BlurKernel& kernel) {
  kernel.reach = reach;
  const auto side = static_cast<std::size_t>(2 * reach + 1);
  kernel.weights.assign(side * side, 0.0F);
}

void Normalize(BlurKernel& kernel) {
  double sum = 0.0;
  for (const float weight : kernel.weights)
    sum += static_cast<double>(weight);
  for (float& weight : kernel.weights)
    weight = static_cast<float>(static_cast<double>(weight) / sum);
}

struct Variances {
  double x = 0.0;
  double y = 0.0;
};

Variances VariancesOf(BlurKernel& kernel) {
  Variances variances;
  for (int y = -kernel.reach; y <= kernel.reach; ++y) {
    for (int x = -kernel.reach; x <= kernel.reach; ++x) {
      variances.x += x * x * static_cast<double>(kernel.At(x, y));
      variances.y += y * y * static_cast<double>(kernel.At(x, y));
    }
  }
  return variances;
}

/// Blurs the kernel itself with (v/2, 1 - v, v/2) along one axis: `step` entries apart.
void AddStep(double variance, int step, BlurKernel& kernel) {
  const auto side = static_cast<float>(0.5 * variance);
  const auto middle = static_cast<float>(1.0 - variance);
  kernel.scratch = kernel.weights;
  const auto size = static_cast<int>(kernel.weights.size());
  for (int i = step; i + step < size; ++i) {
    kernel.weights[static_cast<std::size_t>(i)] =
        middle * kernel.scratch[static_cast<std::size_t>(i)] +
        side * (kernel.scratch[static_cast<std::size_t>(i - step)] +
                kernel.scratch[static_cast<std::size_t>(i + step)]);
  }
}

void AddAlong(double missing, int step, BlurKernel& kernel) {
  for (int k = 0; k < kMostSteps && std::abs(missing) > kSmallVariance; ++k) {
    const double variance = std::clamp(missing, kLeastVarianceStep, kMostVarianceStep);
    AddStep(variance, step, kernel);
    missing -= variance;
    if (variance == kLeastVarianceStep) break;  // sharpening twice would ring
  }
}

/// Brings the kernel's variances to those wanted, so that what drawing it on whole pixels has added does
/// not count.
void BringTo(const Variances& wanted, BlurKernel& kernel) {
  const Variances drawn = VariancesOf(kernel);
  AddAlong(wanted.x - drawn.x, 1, kernel);
  AddAlong(wanted.y - drawn.y, 2 * kernel.reach + 1, kernel);
  Normalize(kernel);
}

int ReachFor(double extent, double rest) {
  return static_cast<int>(std::ceil(extent + 2.5 * std::sqrt(std::max(rest, 0.0)))) + 2;
}

}  // namespace

LineBlur LineOf(const BlurMoments& moments) {
  const double difference =
      std::sqrt(moments.axis * moments.axis + moments.diagonal * moments.diagonal);
  LineBlur line;
  line.rest = moments.round - difference;
  if (!(difference > 0.0)) return line;
  // A line of length l has the variance l^2 / 12, all along its direction; half the angle of
  // (axis, diagonal) is that direction.
  line.length = std::min(std::sqrt(24.0 * difference), kMostExtent);
  const double cosine = moments.axis / difference;
  line.cosine = std::sqrt(std::max(0.5 * (1.0 + cosine), 0.0));
  line.sine = std::copysign(std::sqrt(std::max(0.5 * (1.0 - cosine), 0.0)), moments.diagonal);
  return line;
}

double DiskRadiusOf(double variance) {
  return std::min(2.0 * std::sqrt(std::max(variance, 0.0)), 0.5 * kMostExtent);
}

void MakeDiskKernel(double variance, double sampling, BlurKernel& kernel) {
  constexpr int kFold = 8;  // points a pixel's side, for the share of it that the disk covers
  const double radius = DiskRadiusOf(variance);
  Clear(ReachFor(radius, sampling), kernel);
  for (int y = -kernel.reach; y <= kernel.reach; ++y) {
    for (int x = -kernel.reach; x <= kernel.reach; ++x) {
      int count = 0;
      for (int k = 0; k < kFold * kFold; ++k) {
        const int column = k % kFold;
        const int row = k / kFold;
        const double dx = x + (column + 0.5) / kFold - 0.5;
        const double dy = y + (row + 0.5) / kFold - 0.5;
        count += dx * dx + dy * dy <= radius * radius ? 1 : 0;
      }
      kernel.At(x, y) = static_cast<float>(count);
    }
  }
  Normalize(kernel);
  BringTo({variance + sampling, variance + sampling}, kernel);
}

void MakeLineKernel(const LineBlur& line, double sampling, BlurKernel& kernel) {
  constexpr int kPointsPerPixel = 8;
  Clear(ReachFor(0.5 * line.length, line.rest + sampling), kernel);
  const int num_points = 1 + static_cast<int>(std::ceil(kPointsPerPixel * line.length));
  for (int k = 0; k < num_points; ++k) {
    const double along = ((k + 0.5) / num_points - 0.5) * line.length;
    const double x = along * line.cosine;
    const double y = along * line.sine;
    const double left = std::floor(x);
    const double top = std::floor(y);
    const double right_share = x - left;
    const double lower_share = y - top;
    for (const int i : {0, 1}) {
      for (const int j : {0, 1})
        kernel.At(static_cast<int>(left) + i, static_cast<int>(top) + j) +=
            static_cast<float>((i == 1 ? right_share : 1.0 - right_share) *
                               (j == 1 ? lower_share : 1.0 - lower_share));
    }
  }
  Normalize(kernel);
  const double own = line.length * line.length / 12.0;
  const double rest = line.rest + sampling;
  BringTo({own * line.cosine * line.cosine + rest, own * line.sine * line.sine + rest}, kernel);
}

void Blur(const std::vector<float>& image, int width, int height, const BlurKernel& kernel,
          FloatImage& padded, FloatImage& blurred) {
  const int reach = kernel.reach;
  padded.Resize(width + 2 * reach, height + 2 * reach);
  for (int y = 0; y < padded.height; ++y) {
    const float* const row =
        image.data() + static_cast<std::ptrdiff_t>(std::clamp(y - reach, 0, height - 1)) * width;
    float* const out = padded.Row(y);
    std::fill_n(out, reach, row[0]);
    std::copy_n(row, width, out + reach);
    std::fill_n(out + reach + width, reach, row[width - 1]);
  }
  blurred.Resize(width, height);
  const int side = 2 * reach + 1;
  for (int y = 0; y < height; ++y) {
    float* const out = blurred.Row(y);
    std::fill_n(out, width, 0.0F);
    for (int k = 0; k < side * side; ++k) {
      const float weight = kernel.weights[static_cast<std::size_t>(k)];
      if (weight == 0.0F) continue;
      const float* const in = padded.Row(y + k / side) + k % side;
      for (int x = 0; x < width; ++x)
        out[x] += weight * in[x];
    }
  }
}

}  // namespace orvandel::shape
