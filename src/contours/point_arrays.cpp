#include "contours/point_arrays.h"

namespace orvandel {

bool PointArrays::Allocate(std::int64_t count) {
  x = AllocateZeros<double>(count);
  y = AllocateZeros<double>(count);
  g = AllocateZeros<double>(count);
  f = AllocateZeros<std::uint32_t>(count);
  if (x && y && g && f) return true;
  *this = {};
  return false;
}

bool PointArrays::AllocateUnset(std::int64_t count) {
  x = orvandel::AllocateUnset<double>(count);
  y = orvandel::AllocateUnset<double>(count);
  g = orvandel::AllocateUnset<double>(count);
  f = orvandel::AllocateUnset<std::uint32_t>(count);
  if (x && y && g && f) return true;
  *this = {};
  return false;
}

void PointArrays::MoveInto(CCrawler& set) {
  std::free(set.x);
  std::free(set.y);
  std::free(set.g);
  std::free(set.f);
  set.x = x.release();
  set.y = y.release();
  set.g = g.release();
  set.f = f.release();
}

void FreeArrays(CCrawler& set) {
  PointArrays{}.MoveInto(set);
  std::free(set.contours);
  set.contours = nullptr;
}

std::span<ContourRecord> Records(CCrawler& set) {
  if (set.contours == nullptr || set.contour_count < 1) return {};
  return {set.contours, static_cast<std::size_t>(set.contour_count)};
}

std::int32_t NumPoints(const CCrawler& set) {
  return set.x == nullptr || set.point_count < 1 ? 0 : set.point_count;
}

}  // namespace orvandel
