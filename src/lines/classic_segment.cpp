#include "lines/classic_segment.h"

#include <algorithm>
#include <iterator>

#include "orvandel/classic/line_segment.h"

CLineSegment::CLineSegment()
    : start_x(0),
      start_y(0),
      end_x(0),
      end_y(0),
      mid_x(0),
      mid_y(0),
      line_angle(0),
      line_offset(0),
      direction(0),
      gradient_direction(0),
      spare(0),
      length(0),
      num_points(0),
      fit_error(0),
      contour_index(0) {}

CLineSegment::CLineSegment(const CLineSegment& other) = default;
CLineSegment& CLineSegment::operator=(const CLineSegment& other) = default;
CLineSegment::~CLineSegment() = default;

bool MorePoints(CLineSegment a, CLineSegment b) {
  return a.num_points >= b.num_points;
}

namespace orvandel {

CLineSegment ClassicSegmentOf(const LineSegment& segment) {
  CLineSegment classic;
  classic.start_x = segment.start.x;
  classic.start_y = segment.start.y;
  classic.end_x = segment.end.x;
  classic.end_y = segment.end.y;
  classic.mid_x = segment.mid.x;
  classic.mid_y = segment.mid.y;
  classic.line_angle = segment.line_angle;
  classic.line_offset = segment.line_offset;
  classic.direction = segment.direction;
  classic.gradient_direction = segment.gradient_direction;
  classic.length = segment.length;
  classic.num_points = segment.num_points;
  classic.fit_error = segment.fit_error;
  classic.contour_index = segment.contour_index;
  return classic;
}

LineSegment SegmentOf(const CLineSegment& classic) {
  return {{classic.start_x, classic.start_y},
          {classic.end_x, classic.end_y},
          {classic.mid_x, classic.mid_y},
          classic.line_angle,
          classic.line_offset,
          classic.direction,
          classic.gradient_direction,
          classic.length,
          classic.fit_error,
          classic.num_points,
          classic.contour_index};
}

void CopySegments(std::span<const LineSegment> segments, std::vector<CLineSegment>& classic) {
  classic.clear();
  classic.reserve(segments.size());
  std::transform(segments.begin(), segments.end(), std::back_inserter(classic), ClassicSegmentOf);
}

std::vector<LineSegment> SegmentsOf(std::span<const CLineSegment> classic) {
  std::vector<LineSegment> segments;
  segments.reserve(classic.size());
  std::transform(classic.begin(), classic.end(), std::back_inserter(segments), SegmentOf);
  return segments;
}

}  // namespace orvandel
