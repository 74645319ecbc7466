#include "evaluation/pose_deviation.h"

#include <cmath>
#include <cstddef>
#include <limits>
#include <vector>

#include "base/rounding.h"

namespace orvandel::evaluation {
namespace {

/// r' C^-1 r by Cholesky's decomposition; not a number where C is not positive definite.
double SquaredLength(std::vector<std::vector<double>> c, std::vector<double> r) {
  const std::size_t n = r.size();
  double squared = 0;
  for (std::size_t j = 0; j < n; ++j) {
    for (std::size_t k = 0; k < j; ++k)
      c[j][j] -= c[j][k] * c[j][k];
    if (!(c[j][j] > 0)) return std::numeric_limits<double>::quiet_NaN();
    c[j][j] = std::sqrt(c[j][j]);
    for (std::size_t i = j + 1; i < n; ++i) {
      for (std::size_t k = 0; k < j; ++k)
        c[i][j] -= c[i][k] * c[j][k];
      c[i][j] /= c[j][j];
    }
    for (std::size_t k = 0; k < j; ++k)
      r[j] -= c[j][k] * r[k];
    r[j] /= c[j][j];
    squared += r[j] * r[j];
  }
  return squared;
}

}  // namespace

PoseDeviation DeviationOf(const Similarity& found, const std::array<double, 16>& covariance,
                          const Similarity& truth, const PatternFrame& frame, Symmetry symmetry) {
  const Similarity nearest = NearestEquivalent(truth, found.angle, symmetry);
  // The true place of the point that the found pose tells the place of.
  const Point at = SimilarityMap(nearest) * (frame.origin - CentreOf(frame));
  const std::array<double, 4> residual = {found.x - at.x, found.y - at.y,
                                          NormalizedAngle(found.angle - nearest.angle),
                                          found.scale - nearest.scale};
  constexpr std::size_t kAngle = 2;
  std::vector<std::size_t> free_values;
  for (std::size_t i = 0; i < residual.size(); ++i) {
    if (i == kAngle && symmetry.IsFullCircle()) continue;
    if (covariance[5 * i] != 0 && std::isfinite(covariance[5 * i])) free_values.push_back(i);
  }
  std::vector<std::vector<double>> c;
  std::vector<double> r;
  for (const std::size_t i : free_values) {
    c.emplace_back();
    r.push_back(residual[i]);
    for (const std::size_t j : free_values)
      c.back().push_back(covariance[4 * i + j]);
  }
  return {SquaredLength(c, r), static_cast<int>(r.size())};
}

double NinetyFivePercent(int num_free) {
  // From -2 ln 0.05 for two values; the others solve the incomplete gamma function.
  constexpr std::array<double, 5> kPercentile = {0, 3.841459, 5.991465, 7.814728, 9.487729};
  return kPercentile[static_cast<std::size_t>(num_free)];
}

}  // namespace orvandel::evaluation
