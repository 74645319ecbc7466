#pragma once

namespace orvandel::cli {

/// A position in pixels, x right and y down; the centre of the pixel in column c, row r is
/// (c + 0.5, r + 0.5).
struct Point {
  double x = 0;
  double y = 0;
};

double Distance(Point a, Point b);

/// Where a pattern lies in a scene: turned by `angle` and sized by `scale` about its reference
/// point, which lands at `position`.
struct Pose {
  Point position;    ///< scene pixels
  double angle = 0;  ///< radians; positive turns clockwise on the screen
  double scale = 1;  ///< scene size over pattern size
  Point reference;   ///< pattern pixels
};

/// The scene point where the pose lays a pattern point.
Point operator*(const Pose& scene_from_pattern, Point p_in_pattern);

/// The same angle in (-pi, pi].
double NormalizedAngle(double radians);

double Degrees(double radians);

}  // namespace orvandel::cli
