#include "tests/plain/straight_points.h"

#include <cmath>

#include "base/trigonometry.h"

namespace orvandel::plain {
namespace {

/// Distance of point i from the straight line through points a and b, with a sign.
double DeviationFromChord(const double* x, const double* y, int i, int a, int b) {
  const double chord_angle = ArcTan2(-(y[b] - y[a]), x[b] - x[a]);
  const double point_angle = ArcTan2(-(y[b] - y[i]), x[b] - x[i]);
  const double dx = x[b] - x[i];
  const double dy = y[b] - y[i];
  return Sin(chord_angle - point_angle) * std::sqrt(dx * dx + dy * dy);
}

}  // namespace

void MarkStraightPoints(const CLineExtracter& rules, const double* x, const double* y,
                        std::int32_t* f, int n, bool closed) {
  const int reach = rules.neighbour_offset;
  if (reach < 1 || n / 2 < reach || n < 2 * reach + 1) return;

  // Neighbours wrap two points early, on open contours as well: there the last two points that are
  // examined look ahead to the contour's start.
  const int wrap = n - 2;
  const int first = closed ? 0 : reach;
  const int end = closed ? n : n - reach;
  for (int i = first; i < end; ++i) {
    const int before = (i - reach + wrap) % wrap;
    const int after = (i + reach) % wrap;
    const double deviation = DeviationFromChord(x, y, i, before, after);
    f[i] = rules.max_deviation > std::abs(deviation) ? 1 : 0;
  }
}

}  // namespace orvandel::plain
