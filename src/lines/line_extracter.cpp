#include "orvandel/classic/line_extracter.h"

#include <algorithm>
#include <utility>

#include "base/rounding.h"
#include "contours/point_arrays.h"
#include "lines/segment_fit.h"
#include "lines/segment_join.h"
#include "orvandel/classic/ctd.h"

namespace orvandel {
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
bool AppendSegments(const ContourPoints& contour, const FitLimits& limits, SinCosMemo& memo,
                    std::vector<CLineSegment>& segments) {
  bool appended = false;
  std::int32_t i = 0;
  while (i < contour.size) {
    // Only a flag of exactly 1 starts a run; foreign flags merely continue one.
    if (contour.flags[i] != 1) {
      ++i;
      continue;
    }
    const auto [run, next] = RunFrom(contour, i);
    if (const auto segment = FitSegment(contour, run, limits, memo)) {
      segments.push_back(*segment);
      appended = true;
    }
    i = next;
  }
  return appended;
}

/// Most points first; of equal counts the segment found later comes first.
void SortByPoints(std::vector<CLineSegment>& segments) {
  std::reverse(segments.begin(), segments.end());
  std::stable_sort(
      segments.begin(), segments.end(),
      [](const CLineSegment& a, const CLineSegment& b) { return a.num_points > b.num_points; });
}

}  // namespace
}  // namespace orvandel

CLineExtracter::CLineExtracter()
    : max_deviation(0.25),
      neighbour_offset(3),
      max_fit_error(1.0),
      min_points(4),
      max_join_angle(orvandel::kPi / 180),
      spare_number(0) {}

CLineExtracter::CLineExtracter(const CLineExtracter& other) = default;
CLineExtracter& CLineExtracter::operator=(const CLineExtracter& other) = default;
CLineExtracter::~CLineExtracter() = default;

std::vector<CLineSegment>& CLineExtracter::GetSegments() {
  return segments;
}

int CLineExtracter::Extract(void* contours) {
  segments.clear();
  const int num_contours = static_cast<int>(orvandel::Records(orvandel::SetOf(contours)).size());

  for (int c = 0; c < num_contours; ++c) {
    MarkStraightPoints(ctd_contour_xa(contours, c), ctd_contour_ya(contours, c),
                       ctd_contour_fa(contours, c), ctd_contour_size(contours, c),
                       ctd_contour_closed(contours, c));
  }

  const orvandel::FitLimits fit_limits = {max_fit_error, min_points};
  const orvandel::JoinLimits join_limits = {max_join_angle, static_cast<double>(neighbour_offset)};
  orvandel::SinCosMemo memo;
  for (int c = 0; c < num_contours; ++c) {
    const auto points = orvandel::PointsOf(contours, c);
    const bool appended = orvandel::AppendSegments(points, fit_limits, memo, segments);
    if (appended && ctd_contour_closed(contours, c) != 0) {
      orvandel::JoinAcrossSeam(segments, join_limits);
    }
  }

  orvandel::SortByPoints(segments);
  return static_cast<int>(segments.size());
}
