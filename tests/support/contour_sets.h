#pragma once

#include <cstdint>
#include <utility>
#include <vector>

#include "contours/contour_handle.h"
#include "contours/contour_set.h"
#include "contours/crawler_adapter.h"
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

inline ContourHandle MakeEmptySet() {
  return ContourHandle(ctd_create());
}

inline CCrawler& Fields(const ContourHandle& set) {
  return *static_cast<CCrawler*>(set.get());
}

/// The given contours back to back.
inline ContourSet MakeContours(const std::vector<TestContour>& contours) {
  std::int32_t num_points = 0;
  for (const TestContour& c : contours)
    num_points += static_cast<std::int32_t>(c.points.size());

  ContourSet filled;
  PointArrays& arrays = filled.points;
  arrays.AllocateZeros(num_points);
  filled.num_contours = static_cast<std::int32_t>(contours.size());
  filled.records = AllocateZeros<ContourRecord>(filled.num_contours);
  std::size_t next = 0;
  for (std::size_t i = 0; i < contours.size(); ++i) {
    filled.records[i] = {static_cast<std::int32_t>(next),
                         static_cast<std::int32_t>(contours[i].points.size()), contours[i].closed};
    for (const TestPoint& p : contours[i].points) {
      arrays.x[next] = p.x;
      arrays.y[next] = p.y;
      arrays.g[next] = p.g;
      arrays.f[next] = p.f;
      ++next;
    }
  }
  return filled;
}

/// The same behind a handle, with the defaults of `ctd_create` otherwise.
inline ContourHandle MakeSet(const std::vector<TestContour>& contours) {
  ContourHandle set = MakeEmptySet();
  StoreContours(MakeContours(contours), Fields(set));
  return set;
}

/// The coordinates of a contour of the set.
inline std::vector<double> Xs(const ContourHandle& set, int i) {
  const double* x = ctd_contour_xa(set.get(), i);
  return {x, x + ctd_contour_size(set.get(), i)};
}

inline std::vector<double> Ys(const ContourHandle& set, int i) {
  const double* y = ctd_contour_ya(set.get(), i);
  return {y, y + ctd_contour_size(set.get(), i)};
}

}  // namespace orvandel::test
