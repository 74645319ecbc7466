#pragma once

#include <span>
#include <vector>

#include "lines/line_segment.h"
#include "orvandel/classic/line_segment.h"

namespace orvandel {

/// A segment as hosts hold it, and back; the classic one has a spare number besides, which is 0.
CLineSegment ClassicSegmentOf(const LineSegment& segment);
LineSegment SegmentOf(const CLineSegment& classic);

/// Replaces an array's segments.
void CopySegments(std::span<const LineSegment> segments, std::vector<CLineSegment>& classic);
std::vector<LineSegment> SegmentsOf(std::span<const CLineSegment> classic);

}  // namespace orvandel
