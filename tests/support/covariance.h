#pragma once

#include <cmath>
#include <cstddef>
#include <span>

namespace orvandel::test {

/// Whether a 4 x 4 matrix, row by row, can be a covariance: symmetric, and no direction in which the variance is negative
/// by more than rounding. What has no variance must not vary with anything else. What is not known at all has an infinite
/// variance; everything else must be finite.
inline bool IsCovariance(std::span<const double, 16> matrix) {
  constexpr double kRounding = 1e-6;
  double correlation[4][4];
  for (std::size_t i = 0; i < 4; ++i) {
    for (std::size_t j = 0; j < 4; ++j) {
      const double entry = matrix[4 * i + j];
      if (std::isnan(entry) || matrix[5 * i] < 0) return false;
      if (std::isinf(matrix[5 * i]) || std::isinf(matrix[5 * j])) {
        correlation[i][j] = i == j ? 1 : 0;
        continue;
      }
      const double spread = std::sqrt(matrix[5 * i]) * std::sqrt(matrix[5 * j]);
      if (!std::isfinite(entry) || !(spread >= 0)) return false;
      if (!(std::fabs(entry - matrix[4 * j + i]) <= kRounding * spread)) return false;
      if (spread == 0 && entry != 0) return false;
      correlation[i][j] = spread == 0 ? 0 : entry / spread;
    }
  }
  // Cholesky's decomposition, which exists where all of it is above 0; so a little is added.
  for (std::size_t i = 0; i < 4; ++i) {
    correlation[i][i] += kRounding;
    for (std::size_t k = 0; k < i; ++k)
      correlation[i][i] -= correlation[i][k] * correlation[i][k];
    if (!(correlation[i][i] > 0)) return false;
    const double root = std::sqrt(correlation[i][i]);
    for (std::size_t j = i + 1; j < 4; ++j) {
      for (std::size_t k = 0; k < i; ++k)
        correlation[j][i] -= correlation[j][k] * correlation[i][k];
      correlation[j][i] /= root;
    }
  }
  return true;
}

}  // namespace orvandel::test
