#pragma once

#include <span>
#include <vector>

#include "base/geometry.h"

namespace orvandel::shape {

/// Area of a polygon whose corners run clockwise on the screen.
double AreaOf(std::span<const Point> polygon);

/// Whether a point lies within a convex polygon whose corners run clockwise on the screen, or on its border.
bool IsInside(std::span<const Point> polygon, Point p);

struct OverlapBuffers {
  std::vector<Point> first;
  std::vector<Point> second;
};

/// Area that two convex polygons share; both run clockwise on the screen.
/// Method: I. E. Sutherland, G. W. Hodgman, "Reentrant polygon clipping", Communications of the ACM 17(1), 1974.
double SharedArea(std::span<const Point> a, std::span<const Point> b, OverlapBuffers& buffers);

}  // namespace orvandel::shape
