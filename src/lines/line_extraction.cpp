#include "lines/line_extraction.h"

#include <algorithm>
#include <span>
#include <utility>

#include "lines/segment_fit.h"
#include "lines/segment_join.h"
#include "lines/straight_points.h"

namespace orvandel {
namespace {

/// The run that starts at a point: it goes on over non-zero flags, and never includes the contour's
/// last point.
/// @return  the run, and where the search for the next one goes on.
std::pair<StraightRun, std::int32_t> RunFrom(std::span<const std::uint32_t> flags,
                                             std::int32_t start) {
  const auto last = static_cast<std::int32_t>(flags.size()) - 1;
  std::int32_t end = start;
  while (end < last) {
    ++end;
    if (flags[static_cast<std::size_t>(end)] == 0) break;
  }
  return {{start, end - 1}, end + 1};
}

/// Appends the segments of one contour.
/// @return  whether there were any.
bool AppendSegments(const ContourView& contour, std::int32_t contour_index,
                    const LineOptions& options, SinCosCache& cache,
                    std::vector<LineSegment>& segments) {
  bool appended = false;
  const auto size = static_cast<std::int32_t>(contour.Size());
  std::int32_t i = 0;
  while (i < size) {
    // Only a flag of exactly 1 starts a run; foreign flags merely continue one.
    if (contour.f[static_cast<std::size_t>(i)] != 1) {
      ++i;
      continue;
    }
    const auto [run, next] = RunFrom(contour.f, i);
    if (auto segment = FitSegment(contour, run, options, cache)) {
      segment->contour_index = contour_index;
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

}  // namespace

std::vector<LineSegment> ExtractSegments(const ContourSetView& contours,
                                         const LineOptions& options) {
  for (std::size_t i = 0; i < contours.NumContours(); ++i)
    MarkStraightPoints(contours[i], options);

  std::vector<LineSegment> segments;
  SinCosCache cache;
  for (std::size_t i = 0; i < contours.NumContours(); ++i) {
    const ContourView contour = contours[i];
    const bool appended =
        AppendSegments(contour, static_cast<std::int32_t>(i), options, cache, segments);
    if (appended && contour.closed) JoinAcrossSeam(segments, options);
  }
  SortByPoints(segments);
  return segments;
}

}  // namespace orvandel
