// Smoothing of contour positions by a five-point mean.

#include <span>

#include "contours/point_arrays.h"
#include "orvandel/classic/ctd.h"

namespace orvandel {
namespace {

constexpr std::int32_t kFewestPoints = 6;

/// Smooths in place: only values that the running sum no longer needs are overwritten. Ends are
/// smoothed as ends, on closed contours too.
void Smooth(std::span<double> p) {
  const std::size_t n = p.size();
  const double first = (p[0] + p[1] + p[2]) / 3;
  const double second = (p[0] + p[1] + p[2]) * 0.25 + p[3] * 0.25;
  const double last_but_one = (p[n - 4] + p[n - 3] + p[n - 2]) * 0.25 + p[n - 1] * 0.25;
  const double last = (p[n - 3] + p[n - 2] + p[n - 1]) / 3;

  double leaving = p[0];
  double leaving_next = p[1];
  double sum = p[0] + p[1] + p[2] + p[3] + p[4];
  for (std::size_t i = 2; i + 3 <= n; ++i) {
    const double centre = p[i];
    p[i] = sum / 5;
    if (i + 3 < n) sum = (sum - leaving) + p[i + 3];
    leaving = leaving_next;
    leaving_next = centre;
  }
  p[0] = first;
  p[1] = second;
  p[n - 2] = last_but_one;
  p[n - 1] = last;
}

}  // namespace
}  // namespace orvandel

int ctd_average(void* handle) {
  CCrawler& set = orvandel::SetOf(handle);
  for (const ContourRecord& contour : orvandel::Records(set)) {
    if (contour.size < orvandel::kFewestPoints) continue;
    const auto size = static_cast<std::size_t>(contour.size);
    orvandel::Smooth({set.x + contour.start, size});
    orvandel::Smooth({set.y + contour.start, size});
  }
  return 0;
}
