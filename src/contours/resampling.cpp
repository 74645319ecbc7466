// Replacement of contour points by evenly spaced ones.

#include <algorithm>
#include <cmath>
#include <limits>
#include <new>
#include <span>

#include "base/rounding.h"
#include "contours/contour_walk.h"
#include "contours/point_arrays.h"
#include "orvandel/classic/ctd.h"

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

/// The new point arrays.
class ResampledPoints {
 public:
  /// Throws std::bad_alloc where the arrays cannot be had, or a set could not count their places.
  ResampledPoints(const CCrawler& set, std::int64_t capacity) : set_(set), capacity_(capacity) {
    if (capacity > std::numeric_limits<std::int32_t>::max() || !arrays_.AllocateUnset(capacity)) {
      throw std::bad_alloc();
    }
  }

  ContourRecord Append(std::span<const WalkedPoint> points, const ContourRecord& contour) {
    const std::int32_t start = count_;
    for (const WalkedPoint& point : points)
      Append(point);
    return {start, count_ - start, contour.closed};
  }

  void MoveInto(CCrawler& set) {
    arrays_.MoveInto(set);
    set.point_count = count_;
    set.point_capacity = static_cast<std::int32_t>(capacity_);
  }

 private:
  void Append(const WalkedPoint& point) {
    const std::int32_t j = point.source;
    arrays_.x[next()] = point.x;
    arrays_.y[next()] = point.y;
    if (j < 0) {
      arrays_.g[next()] = set_.g[~j];
      arrays_.f[next()] = set_.f[~j];
    } else {
      arrays_.g[next()] = MeanDirection(set_.g[j], set_.g[j + 1]);
      arrays_.f[next()] = set_.f[j - 1] != 0 || set_.f[j] != 0 ? 1 : 0;
    }
    ++count_;
  }

  std::size_t next() const { return static_cast<std::size_t>(count_); }

  const CCrawler& set_;
  std::int64_t capacity_;
  std::int32_t count_ = 0;
  PointArrays arrays_;
};

void ResampleSet(CCrawler& set) {
  const std::span<ContourRecord> contours = Records(set);
  const ContourWalks walks(set, contours);
  ResampledPoints points(set, GrownCapacity(set.point_count, walks.NumPoints()));
  for (std::size_t i = 0; i < contours.size(); ++i)
    contours[i] = points.Append(walks.Points(i), contours[i]);
  points.MoveInto(set);
}

}  // namespace
}  // namespace orvandel

int ctd_resample(void* handle) {
  CCrawler& set = orvandel::SetOf(handle);
  if (orvandel::NumPoints(set) < 1) return 0;
  try {
    orvandel::ResampleSet(set);
  } catch (const std::bad_alloc&) {
    // The set is as it was.
  }
  return 0;
}
