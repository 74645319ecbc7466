#include "base/sweep.h"

namespace orvandel {
namespace {

/// Far above what rounding leaves of a pivot that is 0 in truth (some 1e-15 times its terms), and far
/// below what a determined unknown keeps.
constexpr double kLeastPivot = 1e-9;

void SweepPivot(SymmetricMatrix& matrix, int n, int k) {
  const double inverse = 1.0 / matrix.at[k][k];
  for (int i = 0; i < n; ++i) {
    if (i == k) continue;
    const double factor = matrix.at[i][k] * inverse;
    for (int j = 0; j < n; ++j) {
      if (j != k) matrix.at[i][j] -= factor * matrix.at[k][j];
    }
  }
  for (int i = 0; i < n; ++i) {
    if (i == k) continue;
    matrix.at[i][k] *= inverse;
    matrix.at[k][i] = matrix.at[i][k];
  }
  matrix.at[k][k] = -inverse;
}

}  // namespace

int InvertBySweeping(SymmetricMatrix& matrix, int n, const double* scale) {
  bool is_held[kMaxUnknowns] = {};
  int num_swept = 0;
  for (int k = 0; k < n; ++k) {
    is_held[k] = !(matrix.at[k][k] > kLeastPivot * scale[k]);  // not-a-number is held
    if (is_held[k]) continue;
    SweepPivot(matrix, n, k);
    ++num_swept;
  }
  for (int i = 0; i < n; ++i) {
    for (int j = 0; j < n; ++j)
      matrix.at[i][j] = is_held[i] || is_held[j] ? 0.0 : -matrix.at[i][j];
  }
  return num_swept;
}

}  // namespace orvandel
