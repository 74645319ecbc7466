#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <vector>

#include "base/rounding.h"
#include "base/trigonometry.h"
#include "tests/reference/crawl.h"
#include "tests/support/contour_sets.h"

// Even spacing once more, written to be read: a list grows by a point at a time. The library has to
// give the same bits.
namespace orvandel::test {

/// Halfway between two directions along the shorter arc, in 0..2 pi; 0 where there is no such.
inline double ReferenceMeanDirection(double a, double b) {
  if (std::isnan(a) || std::isnan(b)) return 0;
  const double low = std::min(a, b);
  const double high = std::max(a, b);
  double mean = high - low > kPi ? low - (kTwoPi - (high - low)) * 0.5 : low + (high - low) * 0.5;
  if (!std::isfinite(mean) || std::fabs(mean) > 1e6) return 0;
  while (mean < 0)
    mean += kTwoPi;
  while (mean > kTwoPi)
    mean -= kTwoPi;
  return mean;
}

/// The points at multiples of `step` from `from` toward `target`: at least one, and none within the
/// last step before the target.
inline std::vector<TestPoint> ReferencePiece(const TestPoint& from, const TestPoint& target,
                                             double step) {
  constexpr double kMostPoints = 1 << 24;
  const double length = ReferenceDistance(target, from);
  const double angle = ArcTan2(-(target.y - from.y), target.x - from.x);
  const bool only_one = !std::isfinite(length) || length - kMostPoints * step > step;
  std::vector<TestPoint> piece;
  double t = 0;
  do {
    t = static_cast<double>(piece.size() + 1) * step;
    piece.push_back({from.x + Cos(angle) * t, from.y - Sin(angle) * t, 0, 0});
  } while (!only_one && length - t > step);
  return piece;
}

inline std::vector<TestPoint> ReferenceResampled(const std::vector<TestPoint>& p, double step,
                                                 double min_dist) {
  if (p.empty()) return {};
  if (!(step > 0)) step = 1.0;
  std::vector<TestPoint> out = {p.front()};
  const std::size_t n = p.size();
  for (std::size_t j = 1; j + 1 < n; ++j) {
    const TestPoint current = out.back();
    while (ReferenceDistance(p[j], current) < min_dist && j + 2 < n)
      ++j;
    for (TestPoint point : ReferencePiece(current, p[j], step)) {
      point.g = ReferenceMeanDirection(p[j].g, p[j + 1].g);
      point.f = p[j - 1].f != 0 || p[j].f != 0 ? 1 : 0;
      out.push_back(point);
    }
  }
  out.push_back(p.back());
  return out;
}

/// Elements allocated after resampling `num_in` points to `num_out`: twice as many as there were
/// and 10, doubled whenever fewer than 6 are left.
inline int ReferenceCapacity(int num_in, int num_out) {
  int capacity = 2 * num_in + 10;
  while (num_out + 5 >= capacity)
    capacity *= 2;
  return capacity;
}

}  // namespace orvandel::test
