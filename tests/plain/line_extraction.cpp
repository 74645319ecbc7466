#include "tests/plain/line_extraction.h"

#include <algorithm>
#include <utility>

#include "contours/crawler_adapter.h"
#include "lines/classic_segment.h"
#include "lines/segment_join.h"
#include "orvandel/classic/ctd.h"
#include "tests/plain/segment_fit.h"
#include "tests/plain/straight_points.h"

namespace orvandel::plain {
namespace {

ContourPoints PointsOf(void* contours, int contour) {
  return {ctd_contour_xa(contours, contour),   ctd_contour_ya(contours, contour),
          ctd_contour_ga(contours, contour),   ctd_contour_fa(contours, contour),
          ctd_contour_size(contours, contour), contour};
}

/// The run that starts at a point: it goes on over non-zero flags, and never includes the contour's
/// last point.
/// @return  the run, and where the search for the next one goes on.
std::pair<StraightRun, std::int32_t> RunFrom(const ContourPoints& contour, std::int32_t start) {
  std::int32_t end = start;
  while (end < contour.size - 1) {
    ++end;
    if (contour.flags[end] == 0) break;
  }
  return {{start, end - 1}, end + 1};
}

/// Appends the segments of one contour.
/// @return  whether there were any.
bool AppendSegments(const ContourPoints& contour, const FitLimits& limits,
                    std::vector<LineSegment>& segments) {
  bool appended = false;
  std::int32_t i = 0;
  while (i < contour.size) {
    // Only a flag of exactly 1 starts a run; foreign flags merely continue one.
    if (contour.flags[i] != 1) {
      ++i;
      continue;
    }
    const auto [run, next] = RunFrom(contour, i);
    if (const auto segment = FitSegment(contour, run, limits)) {
      segments.push_back(*segment);
      appended = true;
    }
    i = next;
  }
  return appended;
}

/// Most points first; of equal counts the segment found later comes first.
void SortByPoints(std::vector<LineSegment>& segments) {
  std::reverse(segments.begin(), segments.end());
  std::stable_sort(
      segments.begin(), segments.end(),
      [](const LineSegment& a, const LineSegment& b) { return a.num_points > b.num_points; });
}

void MarkContour(const CLineExtracter& rules, void* contours, int contour) {
  MarkStraightPoints(rules, ctd_contour_xa(contours, contour), ctd_contour_ya(contours, contour),
                     ctd_contour_fa(contours, contour), ctd_contour_size(contours, contour),
                     ctd_contour_closed(contours, contour) != 0);
}

}  // namespace

std::vector<CLineSegment> ExtractSegments(const CLineExtracter& rules, void* contours) {
  const int num_contours = static_cast<int>(Records(SetOf(contours)).size());
  for (int c = 0; c < num_contours; ++c)
    MarkContour(rules, contours, c);

  std::vector<LineSegment> segments;
  const FitLimits fit_limits = {rules.max_fit_error, rules.min_points};
  LineOptions join_options;
  join_options.max_join_angle = rules.max_join_angle;
  join_options.neighbour_offset = rules.neighbour_offset;
  for (int c = 0; c < num_contours; ++c) {
    const bool appended = AppendSegments(PointsOf(contours, c), fit_limits, segments);
    if (appended && ctd_contour_closed(contours, c) != 0) JoinAcrossSeam(segments, join_options);
  }
  SortByPoints(segments);

  std::vector<CLineSegment> classic;
  for (const LineSegment& segment : segments)
    classic.push_back(ClassicSegmentOf(segment));
  return classic;
}

}  // namespace orvandel::plain
