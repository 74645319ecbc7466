#pragma once

#include <cstddef>
#include <vector>

#include "shape/model/shape_model.h"

namespace orvandel::shape {

/// About `wanted` of the points, or all if there are fewer: strong ones first, none closer to another than a
/// distance that makes the number come out. Any first part of the result is spread over the whole
/// pattern too.
std::vector<EdgePoint> ChoosePoints(const std::vector<EdgePoint>& points, std::size_t wanted);

/// The convex outline of the points, clockwise on the screen.
/// Method: A. M. Andrew, "Another efficient algorithm for convex hulls in two dimensions", Information
/// Processing Letters 9(5), 1979.
std::vector<Point> ConvexHull(const std::vector<EdgePoint>& points);

}  // namespace orvandel::shape
