#include "contours/resampling.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <new>
#include <span>
#include <utility>

#include "base/rounding.h"
#include "contours/resampler.h"

namespace orvandel {
namespace {

/// Directions further out than this are not directions; turning them back would take for ever.
constexpr double kLargestDirection = 1e6;

/// Circular mean of two directions, in [0, 2 pi]; 0 where they have none.
double MeanDirection(double a, double b) {
  if (!std::isfinite(a) || !std::isfinite(b)) return 0.0;
  const double low = std::min(a, b);
  const double high = std::max(a, b);
  double mean = high - low > kPi ? low - (kTwoPi - (high - low)) * 0.5 : low + (high - low) * 0.5;
  if (std::abs(mean) > kLargestDirection) return 0.0;
  while (mean < 0)
    mean += kTwoPi;
  while (mean > kTwoPi)
    mean -= kTwoPi;
  return mean;
}

/// Capacity of arrays that doubled whenever five places were left.
std::int64_t GrownCapacity(std::int64_t num_before, std::int64_t num_after) {
  std::int64_t capacity = 2 * num_before + 10;
  while (num_after + 5 >= capacity)
    capacity *= 2;
  return capacity;
}

/// Appends evenly spaced points with directions and flags from their input points.
class PointWriter {
 public:
  /// Throws std::bad_alloc where the arrays cannot be had, or 32 bits could not count their places.
  PointWriter(const ContourSetView& contours, std::int64_t capacity) : from_(contours) {
    if (capacity > std::numeric_limits<std::int32_t>::max() || !to_.AllocateUnset(capacity)) {
      throw std::bad_alloc();
    }
    to_.count = 0;
  }

  ContourRecord Append(std::span<const ResampledPoint> points, const ContourRecord& contour) {
    const std::int32_t start = to_.count;
    for (const ResampledPoint& point : points)
      Append(point);
    return {start, to_.count - start, contour.closed};
  }

  PointArrays Take() { return std::move(to_); }

 private:
  void Append(const ResampledPoint& point) {
    const auto at = static_cast<std::size_t>(to_.count);
    to_.x[at] = point.x;
    to_.y[at] = point.y;
    if (point.source < 0) {
      const auto j = static_cast<std::size_t>(~point.source);
      to_.g[at] = from_.g[j];
      to_.f[at] = from_.f[j];
    } else {
      const auto j = static_cast<std::size_t>(point.source);
      to_.g[at] = MeanDirection(from_.g[j], from_.g[j + 1]);
      to_.f[at] = from_.f[j - 1] != 0 || from_.f[j] != 0 ? 1 : 0;
    }
    ++to_.count;
  }

  const ContourSetView& from_;
  PointArrays to_;
};

}  // namespace

PointArrays ResampleContours(const ContourSetView& contours, const ResampleOptions& options) {
  const Resampler resampler(contours, options);
  const auto num_before = static_cast<std::int64_t>(contours.NumPoints());
  PointWriter writer(contours, GrownCapacity(num_before, resampler.NumPoints()));
  for (std::size_t i = 0; i < contours.NumContours(); ++i)
    contours.records[i] = writer.Append(resampler.Points(i), contours.records[i]);
  return writer.Take();
}

}  // namespace orvandel
