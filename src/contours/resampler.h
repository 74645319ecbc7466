#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "contours/contour_set.h"
#include "contours/resampling.h"
#include "contours/unit_vector_kernels.h"

namespace orvandel {

/// A point of an evenly spaced contour.
struct ResampledPoint {
  double x;
  double y;
  /// The input point that the way to it leads to; for the first and the last point, which are input
  /// points themselves, the complement of its index.
  std::int32_t source;
};

/// Lays evenly spaced points along contours, from input point to input point. Several contours are worked on
/// at a time, each in a lane of its own: a step starts where the one before ended, so a contour alone would
/// wait for every sine and cosine.
class Resampler {
 public:
  /// Throws std::bad_alloc where the points are too many for memory or for 32 bits.
  Resampler(const ContourSetView& contours, const ResampleOptions& options);
  Resampler(const Resampler&) = delete;
  Resampler& operator=(const Resampler&) = delete;

  /// The points of the i-th contour.
  std::span<const ResampledPoint> Points(std::size_t i) const;

  /// Of all contours together.
  std::int64_t NumPoints() const;

 private:
  using PointList = std::vector<ResampledPoint>;

  /// Where the points of one contour are among those of its lane.
  struct Range {
    const PointList* points = nullptr;
    std::size_t first = 0;
    std::size_t count = 0;
  };

  class Lane;

  std::array<PointList, kNumLanes> lane_points_;
  std::vector<Range> ranges_;
};

}  // namespace orvandel
