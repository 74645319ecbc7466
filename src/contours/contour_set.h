#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

#include "base/heap_array.h"
#include "orvandel/classic/crawler.h"

namespace orvandel {

/// One contour's points in order.
struct ContourView {
  std::span<double> x;  ///< pixels, to the right
  std::span<double> y;  ///< pixels, downwards
  std::span<double>
      g;  ///< gradient directions, radians: the vector (cos g, -sin g); 0 where unknown
  std::span<std::uint32_t> f;  ///< flags: 0, or what line extraction wrote: 1 on a straight range
  bool closed = false;

  std::size_t Size() const { return x.size(); }
};

/// Contours, whoever owns them: the points of all in four parallel arrays, and records that cut these into
/// contours. The records lie inside the arrays; they may come in any order.
struct ContourSetView {
  std::span<double> x;
  std::span<double> y;
  std::span<double> g;
  std::span<std::uint32_t> f;
  std::span<ContourRecord> records;

  std::size_t NumPoints() const { return x.size(); }
  std::size_t NumContours() const { return records.size(); }
  ContourView operator[](std::size_t contour) const;
};

/// Four parallel arrays of points.
struct PointArrays {
  HeapArray<double> x;
  HeapArray<double> y;
  HeapArray<double> g;
  HeapArray<std::uint32_t> f;
  std::int32_t count = 0;     ///< points
  std::int32_t capacity = 0;  ///< points that there is room for

  /// Room for `num_points` zeros, all of them counted, 32 bits at most; false when memory cannot be had,
  /// and then there is room for none.
  bool AllocateZeros(std::int64_t num_points);
  /// The same without a content.
  bool AllocateUnset(std::int64_t num_points);

 private:
  bool KeepAllOrNone(std::int64_t num_points);
};

/// Contours that own themselves.
struct ContourSet {
  PointArrays points;
  HeapArray<ContourRecord> records;
  std::int32_t num_contours = 0;

  ContourSetView View() const;
};

}  // namespace orvandel
