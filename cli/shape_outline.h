#pragma once

#include <vector>

#include "cli/polyline.h"
#include "shape/model/shape_model.h"

namespace orvandel::cli {

/// Strokes that join neighbouring edge points of a shape along their edge, for drawing: a shape
/// holds its points without order. A point that has no neighbour becomes a dash of its own.
std::vector<Polyline> JoinedPoints(const shape::EdgePoints& points);

}  // namespace orvandel::cli
