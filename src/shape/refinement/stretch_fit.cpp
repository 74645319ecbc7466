#include "shape/refinement/stretch_fit.h"

#include <algorithm>

#include "base/sweep.h"

namespace orvandel::shape {
namespace {

/// Fewer pixels could not hold four parameters and say how well they fit.
constexpr int kLeastFitPixels = 12;

/// Keeps the shift along a straight stretch, where the image says nothing of it, from growing: a share
/// of the gradients' sum of squares.
constexpr double kShiftRidge = 0.01;

constexpr int kNumUnknowns = 4;
constexpr Column kUnknowns[kNumUnknowns] = {kOne, kPattern, kMoveX, kMoveY};

StretchFit FitStretch(const StretchSums& sums, int num_pixels) {
  StretchFit fit;
  const double scene_spread = sums.SceneSpread();
  if (num_pixels < kLeastFitPixels || !(sums.Weight() > 0.0)) return fit;
  SymmetricMatrix matrix;
  double scale[kNumUnknowns];
  for (int i = 0; i < kNumUnknowns; ++i) {
    for (int j = 0; j < kNumUnknowns; ++j)
      matrix.at[i][j] = sums.at[kUnknowns[i]][kUnknowns[j]];
    scale[i] = matrix.at[i][i];
  }
  const double ridge = kShiftRidge * (scale[2] + scale[3]);
  matrix.at[2][2] += ridge;
  matrix.at[3][3] += ridge;
  InvertBySweeping(matrix, kNumUnknowns, scale);
  double solution[kNumUnknowns] = {};
  double left = sums.at[kScene][kScene];
  for (int i = 0; i < kNumUnknowns; ++i) {
    for (int j = 0; j < kNumUnknowns; ++j)
      solution[i] += matrix.at[i][j] * sums.at[kUnknowns[j]][kScene];
    left -= solution[i] * sums.at[kUnknowns[i]][kScene];
  }
  fit.bias = solution[0];
  fit.gain = solution[1];
  fit.gain_variance = matrix.at[1][1];
  fit.bias_variance = 1.0 / sums.Weight();
  fit.importance = std::max(sums.PatternSpread(), 0.0);
  fit.residual = std::max(left, 0.0) / num_pixels;
  fit.explained = scene_spread > 0.0 ? std::clamp(1.0 - left / scene_spread, 0.0, 1.0) : 0.0;
  fit.num_pixels = num_pixels;
  return fit;
}

}  // namespace

void FitStretches(std::span<const StretchSums> sums, std::span<const int> num_pixels,
                  std::span<StretchFit> fits) {
  for (std::size_t t = 0; t < sums.size(); ++t)
    fits[t] = FitStretch(sums[t], num_pixels[t]);
}

}  // namespace orvandel::shape
