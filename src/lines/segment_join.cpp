#include "lines/segment_join.h"

#include <cmath>
#include <cstddef>

#include "base/rounding.h"
#include "base/trigonometry.h"
#include "orvandel/classic/mvtools_i.h"

namespace orvandel {
namespace {

/// Index of the first of the segments at the array's end that belong to one contour.
std::size_t FirstOfLastContour(const std::vector<LineSegment>& segments) {
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

bool ContinueEachOther(const LineSegment& first, const LineSegment& last,
                       const LineOptions& options) {
  const Point gap = first.start - last.end;
  return options.max_join_angle > AngleBetween(first.line_angle, last.line_angle) &&
         options.neighbour_offset > Hypot(gap.x, gap.y);
}

LineSegment Joined(const LineSegment& first, const LineSegment& last) {
  LineSegment joined;
  joined.start = last.start;
  joined.end = first.end;
  joined.mid = 0.5 * (joined.start + joined.end);
  mvt_line_bisect(last.line_angle, last.line_offset, first.line_angle, first.line_offset,
                  &joined.line_angle, &joined.line_offset);
  joined.num_points = first.num_points + last.num_points;
  joined.fit_error = (first.fit_error + last.fit_error) * 0.5;
  joined.contour_index = first.contour_index;
  return joined;
}

}  // namespace

void JoinAcrossSeam(std::vector<LineSegment>& segments, const LineOptions& options) {
  if (segments.size() <= 2) return;
  const std::size_t first = FirstOfLastContour(segments);
  if (first == segments.size() - 1) return;
  if (!ContinueEachOther(segments[first], segments.back(), options)) return;

  const LineSegment joined = Joined(segments[first], segments.back());
  segments.pop_back();
  segments[first] = joined;
}

}  // namespace orvandel
