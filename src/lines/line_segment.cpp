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
