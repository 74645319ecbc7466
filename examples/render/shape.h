#pragma once

#include <vector>

#include "examples/render/geometry.h"

namespace orvandel::render {

/// A closed outline: the last point is joined to the first. It may run either way round but must
/// not cross itself. Curves are polygons that stay within `kFlatness` inside the true curve.
using Outline = std::vector<Point>;

/// Largest distance of a curve from its polygon, part units: below a hundredth of a pixel at scale
/// 4.
inline constexpr double kFlatness = 0.002;

/// The grey value of a point (x, y) of a part is grey + x * per_x + y * per_y, so a fill can be
/// shaded along a direction.
struct Fill {
  double grey = 0;
  double per_x = 0;
  double per_y = 0;
};

/// A filled region with holes. Holes lie inside the outline and apart from each other.
struct Shape {
  Outline outline;
  std::vector<Outline> holes = {};
  Fill fill = {};
};

/// A corner of a polygon, rounded by an arc that touches both sides; radius 0 leaves it sharp.
struct Corner {
  Point at;
  double radius = 0;
};

Outline Rectangle(Point centre, double width, double height);

/// The polygon through the corners, each one rounded. Two neighbouring arcs must fit on their side.
Outline RoundedPolygon(const std::vector<Corner>& corners);

/// The corners of a parallel polygon, `distance` further in: arcs stay concentric. Corners must run
/// clockwise on the screen; no side may vanish.
std::vector<Corner> Inset(const std::vector<Corner>& corners, double distance);

Outline Circle(Point centre, double radius);

/// A thick line with square ends.
Outline Bar(Point from, Point to, double thickness);

/// A thick line with round ends, as a cutter of the given radius mills it from `from` to `to`.
Outline Slot(Point from, Point to, double radius);

/// A thick arc with square ends about `centre`, clockwise on the screen from `from_deg` to
/// `to_deg`, less than a whole turn. `radius` is that of the arc's middle.
Outline ArcBand(Point centre, double radius, double thickness, double from_deg, double to_deg);

/// Area inside an outline, positive when it runs clockwise on the screen.
double SignedArea(const Outline& outline);

}  // namespace orvandel::render
