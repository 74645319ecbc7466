#pragma once

#include <vector>

#include "tests/lines/contour_shapes.h"

namespace orvandel::test {

/// The segments that an extracter with these parameters leaves.
inline std::vector<CLineSegment> Extracted(const std::vector<TestContour>& contours,
                                           CLineExtracter extracter) {
  const ContourHandle set = MakeSet(contours);
  extracter.Extract(set.get());
  return extracter.segments;
}

/// A closed contour of two runs of ten fitted points each, A from the origin and B from (100, 0),
/// each with its own step. The last point belongs to neither.
inline TestContour TwoPieces(double ax, double ay, double bx, double by) {
  TestContour contour;
  contour.closed = true;
  AppendStraight(contour, 11, 0, 0, ax, ay);
  AppendStraight(contour, 1, 50, 50, 0, 0);
  AppendStraight(contour, 12, 100, 0, bx, by);
  SetAllFlags(contour, 1);
  contour.points[11].f = 0;
  return contour;
}

}  // namespace orvandel::test
