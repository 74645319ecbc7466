#include "contours/smoothing.h"

#include <cstddef>
#include <span>

namespace orvandel {
namespace {

/// Fewer points have no pixel between their ends whose mean is of five.
constexpr std::size_t kFewestPoints = 6;

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

void SmoothContours(const ContourSetView& contours) {
  for (std::size_t i = 0; i < contours.NumContours(); ++i) {
    const ContourView contour = contours[i];
    if (contour.Size() < kFewestPoints) continue;
    Smooth(contour.x);
    Smooth(contour.y);
  }
}

}  // namespace orvandel
