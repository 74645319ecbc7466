// Which points of a contour lie on a straight stretch.

#include <cmath>

#include "lines/line_extracter.h"

namespace orvandel {
namespace {

/// Distance of point i from the straight line through points a and b, with a sign.
double DeviationFromChord(const double* x, const double* y, int i, int a, int b) {
  const double chord_angle = std::atan2(-(y[b] - y[a]), x[b] - x[a]);
  const double point_angle = std::atan2(-(y[b] - y[i]), x[b] - x[i]);
  const double dx = x[b] - x[i];
  const double dy = y[b] - y[i];
  return std::sin(chord_angle - point_angle) * std::sqrt(dx * dx + dy * dy);
}

}  // namespace
}  // namespace orvandel

int CLineExtracter::MarkStraightPoints(const double* x, const double* y, int* f, int n,
                                       int closed) {
  const int reach = neighbour_offset;
  if (reach < 1 || n / 2 < reach || n < 2 * reach + 1) return 1;

  // Neighbours wrap two points early, on open contours as well: there the last two points that are
  // examined look ahead to the contour's start.
  const int wrap = n - 2;
  const int first = closed != 0 ? 0 : reach;
  const int end = closed != 0 ? n : n - reach;
  for (int i = first; i < end; ++i) {
    const int before = (i - reach + wrap) % wrap;
    const int after = (i + reach) % wrap;
    const double deviation = orvandel::DeviationFromChord(x, y, i, before, after);
    f[i] = max_deviation > std::abs(deviation) ? 1 : 0;
  }
  return 0;
}
