#include "lines/segment_join.h"

#include <cmath>
#include <cstddef>

#include "base/rounding.h"
#include "base/trigonometry.h"
#include "orvandel/classic/mvtools_i.h"

namespace orvandel {
namespace {

/// Index of the first of the segments at the array's end that belong to one contour.
std::size_t FirstOfLastContour(const std::vector<CLineSegment>& segments) {
  std::size_t first = segments.size() - 1;
  const std::int32_t contour = segments[first].contour_index;
  while (first > 0 && segments[first - 1].contour_index == contour)
    --first;
  return first;
}

double AngleBetween(double a, double b) {
  double difference = std::abs(a - b);
  while (difference > kPi)
    difference = kTwoPi - difference;
  return difference;
}

bool ContinueEachOther(const CLineSegment& first, const CLineSegment& last,
                       const JoinLimits& limits) {
  const double gap = Hypot(first.start_x - last.end_x, first.start_y - last.end_y);
  return limits.max_angle > AngleBetween(first.line_angle, last.line_angle) && limits.max_gap > gap;
}

CLineSegment Joined(const CLineSegment& first, const CLineSegment& last) {
  CLineSegment joined;
  joined.start_x = last.start_x;
  joined.start_y = last.start_y;
  joined.end_x = first.end_x;
  joined.end_y = first.end_y;
  joined.mid_x = (joined.start_x + joined.end_x) * 0.5;
  joined.mid_y = (joined.start_y + joined.end_y) * 0.5;
  mvt_line_bisect(last.line_angle, last.line_offset, first.line_angle, first.line_offset,
                  &joined.line_angle, &joined.line_offset);
  joined.num_points = first.num_points + last.num_points;
  joined.fit_error = (first.fit_error + last.fit_error) * 0.5;
  joined.contour_index = first.contour_index;
  return joined;
}

}  // namespace

void JoinAcrossSeam(std::vector<CLineSegment>& segments, const JoinLimits& limits) {
  if (segments.size() <= 2) return;
  const std::size_t first = FirstOfLastContour(segments);
  if (first == segments.size() - 1) return;
  if (!ContinueEachOther(segments[first], segments.back(), limits)) return;

  const CLineSegment joined = Joined(segments[first], segments.back());
  segments.pop_back();
  segments[first] = joined;
}

}  // namespace orvandel
