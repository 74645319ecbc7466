#include "contours/contour_set.h"

namespace orvandel {
namespace {

template <typename T>
std::span<T> PointsOf(std::span<T> all, const ContourRecord& record) {
  // A set that a host filled in need not count its points rightly, so its records alone say where they end.
  return record.size < 1
             ? std::span<T>()
             : std::span<T>(all.data() + record.start, static_cast<std::size_t>(record.size));
}

template <typename T>
std::span<T> SpanOf(const HeapArray<T>& array, std::int32_t count) {
  return {array.get(), static_cast<std::size_t>(count)};
}

}  // namespace

ContourView ContourSetView::operator[](std::size_t contour) const {
  const ContourRecord& record = records[contour];
  return {PointsOf(x, record), PointsOf(y, record), PointsOf(g, record), PointsOf(f, record),
          record.closed != 0};
}

bool PointArrays::AllocateZeros(std::int64_t num_points) {
  *this = {orvandel::AllocateZeros<double>(num_points), orvandel::AllocateZeros<double>(num_points),
           orvandel::AllocateZeros<double>(num_points),
           orvandel::AllocateZeros<std::uint32_t>(num_points)};
  return KeepAllOrNone(num_points);
}

bool PointArrays::AllocateUnset(std::int64_t num_points) {
  *this = {orvandel::AllocateUnset<double>(num_points), orvandel::AllocateUnset<double>(num_points),
           orvandel::AllocateUnset<double>(num_points),
           orvandel::AllocateUnset<std::uint32_t>(num_points)};
  return KeepAllOrNone(num_points);
}

bool PointArrays::KeepAllOrNone(std::int64_t num_points) {
  if (x && y && g && f) {
    count = capacity = static_cast<std::int32_t>(num_points);
    return true;
  }
  *this = {};
  return false;
}

ContourSetView ContourSet::View() const {
  return {SpanOf(points.x, points.count), SpanOf(points.y, points.count),
          SpanOf(points.g, points.count), SpanOf(points.f, points.count),
          SpanOf(records, num_contours)};
}

}  // namespace orvandel
