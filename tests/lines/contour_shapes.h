#pragma once

#include <cmath>
#include <cstddef>
#include <cstdint>
#include <numbers>
#include <vector>

#include "orvandel/classic/line_extracter.h"
#include "tests/support/contour_sets.h"

namespace orvandel::test {

inline constexpr double kHalfTurn = std::numbers::pi;
inline constexpr double kQuarterTurn = kHalfTurn / 2;

/// Points as two arrays.
struct Points {
  std::vector<double> x;
  std::vector<double> y;
};

/// Appends `count` points: from, from + step, from + 2 * step, ...
inline void AppendStraight(TestContour& contour, int count, double from_x, double from_y,
                           double step_x, double step_y) {
  for (int i = 0; i < count; ++i)
    contour.points.push_back({from_x + i * step_x, from_y + i * step_y});
}

/// An open contour along y = `y` from x = 0 on, one pixel a point, with gradient direction g.
inline TestContour HorizontalContour(int count, double y, double g = kQuarterTurn) {
  TestContour contour;
  AppendStraight(contour, count, 0, y, 1, 0);
  for (TestPoint& p : contour.points)
    p.g = g;
  return contour;
}

inline void SetFlags(TestContour& contour, const std::vector<std::uint32_t>& flags) {
  for (std::size_t i = 0; i < flags.size(); ++i)
    contour.points[i].f = flags[i];
}

inline void SetAllFlags(TestContour& contour, std::uint32_t flag) {
  for (TestPoint& p : contour.points)
    p.f = flag;
}

/// An extracter for which every contour is too short to be marked, so that a test decides by its
/// flags where the straight ranges are. Pieces up to 1000 pixels apart are joined.
inline CLineExtracter ExtracterThatKeepsFlags() {
  CLineExtracter extracter;
  extracter.neighbour_offset = 1000;
  return extracter;
}

/// An open contour along y = `y` whose flags are all 1 and from which `ExtracterThatKeepsFlags`
/// makes one segment of `num_points`. (Neither the last point nor the end point before it counts.)
inline TestContour ContourOfSegment(int num_points, double y) {
  TestContour contour = HorizontalContour(num_points + 2, y);
  SetAllFlags(contour, 1);
  return contour;
}

/// A closed square of side 40, one pixel a point, clockwise on the screen from (20, 0), the middle
/// of its upper side: corners at points 20, 60, 100 and 140. Of its 160 points the first `count`.
inline TestContour SquareFromMiddleOfSide(std::size_t count = 160) {
  TestContour contour;
  contour.closed = true;
  AppendStraight(contour, 20, 20, 0, 1, 0);
  AppendStraight(contour, 40, 40, 0, 0, 1);
  AppendStraight(contour, 40, 40, 40, -1, 0);
  AppendStraight(contour, 40, 0, 40, 0, -1);
  AppendStraight(contour, 20, 0, 0, 1, 0);
  contour.points.resize(count);
  return contour;
}

/// The flags of one contour of a set.
inline std::vector<int> FlagsOf(const ContourHandle& set, int contour = 0) {
  const std::int32_t* flags = ctd_contour_fa(set.get(), contour);
  return {flags, flags + ctd_contour_size(set.get(), contour)};
}

}  // namespace orvandel::test
