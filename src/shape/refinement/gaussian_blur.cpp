#include "shape/refinement/gaussian_blur.h"

#include <algorithm>

namespace orvandel::shape {
namespace {

/// Smaller taps, against the middle one, are left out. What they would add to the variance is small, and
/// the variance is measured on the taps that there are.
constexpr double kLeastTap = 1e-3;

/// One row with its border values repeated `reach` times on both sides.
void PadRow(const float* row, int width, int reach, std::vector<float>& padded) {
  padded.resize(static_cast<std::size_t>(width + 2 * reach));
  std::fill_n(padded.begin(), reach, row[0]);
  std::copy_n(row, width, padded.begin() + reach);
  std::fill_n(padded.begin() + reach + width, reach, row[width - 1]);
}

void BlurRows(const FloatImage& image, const BlurTaps& taps, FloatImage& blurred) {
  const int reach = static_cast<int>(taps.half.size()) - 1;
  std::vector<float> padded;
  for (int y = 0; y < image.height; ++y) {
    PadRow(image.Row(y), image.width, reach, padded);
    const float* const middle = padded.data() + reach;
    float* const out = blurred.Row(y);
    for (int x = 0; x < image.width; ++x)
      out[x] = taps.half[0] * middle[x];
    for (int k = 1; k <= reach; ++k) {
      const float tap = taps.half[static_cast<std::size_t>(k)];
      const float* const left = middle - k;
      const float* const right = middle + k;
      for (int x = 0; x < image.width; ++x)
        out[x] += tap * (left[x] + right[x]);
    }
  }
}

void BlurColumns(const FloatImage& image, const BlurTaps& taps, FloatImage& blurred) {
  const int reach = static_cast<int>(taps.half.size()) - 1;
  for (int y = 0; y < image.height; ++y) {
    const float* const middle = image.Row(y);
    float* const out = blurred.Row(y);
    for (int x = 0; x < image.width; ++x)
      out[x] = taps.half[0] * middle[x];
    for (int k = 1; k <= reach; ++k) {
      const float tap = taps.half[static_cast<std::size_t>(k)];
      const float* const above = image.Row(std::max(y - k, 0));
      const float* const below = image.Row(std::min(y + k, image.height - 1));
      for (int x = 0; x < image.width; ++x)
        out[x] += tap * (above[x] + below[x]);
    }
  }
}

}  // namespace

BlurTaps MakeGaussianTaps(double ratio) {
  std::vector<double> weights = {1.0};
  double sum = 1.0;
  double moment = 0.0;
  double step = ratio;  // ratio^(2k-1), from one square to the next
  double tap = ratio;
  while (tap > kLeastTap) {
    const auto k = static_cast<double>(weights.size());
    weights.push_back(tap);
    sum += 2.0 * tap;
    moment += 2.0 * tap * k * k;
    step *= ratio * ratio;
    tap *= step;
  }
  BlurTaps taps;
  taps.variance = moment / sum;
  for (const double weight : weights)
    taps.half.push_back(static_cast<float>(weight / sum));
  return taps;
}

void Blur(const FloatImage& image, const BlurTaps& taps, FloatImage& between, FloatImage& blurred) {
  between.Resize(image.width, image.height);
  blurred.Resize(image.width, image.height);
  BlurRows(image, taps, between);
  BlurColumns(between, taps, blurred);
}

}  // namespace orvandel::shape
