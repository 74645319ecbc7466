#pragma once

#include <array>
#include <cstddef>

namespace orvandel::shape {

/// A pose has four unknowns: x, y, angle and scale.
using PoseVector = std::array<double, 4>;
using PoseMatrix = std::array<PoseVector, 4>;

/// The solution of matrix * x = right for a positive definite matrix, by the square-root-free Cholesky
/// decomposition; a direction whose pivot is not above 0 stays at 0. Operations come in a fixed order.
inline PoseVector Solved(const PoseMatrix& matrix, const PoseVector& right) {
  PoseMatrix lower = {};
  PoseVector pivot = {};
  for (std::size_t j = 0; j < 4; ++j) {
    double d = matrix[j][j];
    for (std::size_t k = 0; k < j; ++k)
      d -= lower[j][k] * lower[j][k] * pivot[k];
    pivot[j] = d;
    for (std::size_t i = j + 1; i < 4; ++i) {
      double sum = matrix[i][j];
      for (std::size_t k = 0; k < j; ++k)
        sum -= lower[i][k] * lower[j][k] * pivot[k];
      lower[i][j] = d > 0.0 ? sum / d : 0.0;
    }
  }
  PoseVector x = right;
  for (std::size_t i = 0; i < 4; ++i) {
    for (std::size_t k = 0; k < i; ++k)
      x[i] -= lower[i][k] * x[k];
  }
  for (std::size_t i = 0; i < 4; ++i)
    x[i] = pivot[i] > 0.0 ? x[i] / pivot[i] : 0.0;
  for (std::size_t i = 4; i-- > 0;) {
    for (std::size_t k = i + 1; k < 4; ++k)
      x[i] -= lower[k][i] * x[k];
  }
  return x;
}

}  // namespace orvandel::shape
