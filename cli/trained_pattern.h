#pragma once

#include "cli/canvas.h"
#include "cli/pattern_finder.h"
#include "cli/report.h"
#include "cli/segment_finder.h"
#include "shape/model/shape_model.h"

namespace orvandel::cli {

// What `train` shows of a learnt pattern.

/// Of the shape engine.
void PrintTrained(const PatternFacts& facts, Report& report);
/// Of the segment engine.
void PrintTrained(const PatternFacts& facts, bool is_estimated_threshold, Report& report);

/// The edge points at full size, over the picture that they were learnt from.
void DrawEdgePoints(Canvas& canvas, const shape::ShapeModel& model);
/// The contours, each in a colour of its own.
void DrawContours(Canvas& canvas, const SegmentFinder& finder);

}  // namespace orvandel::cli
