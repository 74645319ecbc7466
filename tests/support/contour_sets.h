#pragma once

#include <cstdint>
#include <memory>
#include <vector>

#include "contours/point_arrays.h"
#include "orvandel/classic/crawler.h"
#include "orvandel/classic/ctd.h"

namespace orvandel::test {

struct TestPoint {
  double x = 0;
  double y = 0;
  double g = 0;
  std::uint32_t f = 0;
};

struct TestContour {
  std::vector<TestPoint> points;
  bool closed = false;
};

struct SetDeleter {
  void operator()(void* handle) const { ctd_delete(handle); }
};
/// A `ctd_` handle that releases itself; `get()` is the handle.
using ContourSet = std::unique_ptr<void, SetDeleter>;

inline ContourSet MakeEmptySet() {
  return ContourSet(ctd_create());
}

inline CCrawler& Fields(const ContourSet& set) {
  return *static_cast<CCrawler*>(set.get());
}

/// A set that holds the given contours back to back, with the defaults of `ctd_create` otherwise.
inline ContourSet MakeSet(const std::vector<TestContour>& contours) {
  ContourSet set = MakeEmptySet();
  std::int32_t num_points = 0;
  for (const TestContour& c : contours)
    num_points += static_cast<std::int32_t>(c.points.size());

  PointArrays arrays;
  arrays.Allocate(num_points);
  auto records = AllocateZeros<ContourRecord>(static_cast<std::int64_t>(contours.size()));
  std::size_t next = 0;
  for (std::size_t i = 0; i < contours.size(); ++i) {
    records[i] = {static_cast<std::int32_t>(next),
                  static_cast<std::int32_t>(contours[i].points.size()), contours[i].closed};
    for (const TestPoint& p : contours[i].points) {
      arrays.x[next] = p.x;
      arrays.y[next] = p.y;
      arrays.g[next] = p.g;
      arrays.f[next] = p.f;
      ++next;
    }
  }
  CCrawler& fields = Fields(set);
  arrays.MoveInto(fields);
  fields.contours = records.release();
  fields.point_count = fields.point_capacity = num_points;
  fields.contour_count = fields.contour_capacity = static_cast<std::int32_t>(contours.size());
  return set;
}

}  // namespace orvandel::test
