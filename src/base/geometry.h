#pragma once

#include "base/trigonometry.h"

namespace orvandel {

/// A position or a step in pixels, x right, y down.
struct Point {
  double x = 0.0;
  double y = 0.0;

  friend bool operator==(const Point&, const Point&) = default;
};

inline Point operator+(Point a, Point b) {
  return {a.x + b.x, a.y + b.y};
}
inline Point operator-(Point a, Point b) {
  return {a.x - b.x, a.y - b.y};
}
inline Point operator*(double factor, Point p) {
  return {factor * p.x, factor * p.y};
}

inline double Dot(Point a, Point b) {
  return a.x * b.x + a.y * b.y;
}

/// A rotation, a scale and a shift. It says its frames: `scene_from_pattern * p_in_pattern` is a point in
/// the scene.
///
///   p -> (x, y) + scale * R(angle) * p,   R = [[cos, -sin], [sin, cos]]
///
/// With y down, a positive angle turns clockwise on the screen. A pattern's points are measured from its
/// origin, so (x, y) is where the origin lies in the scene.
struct Similarity {
  double x = 0.0;
  double y = 0.0;
  double angle = 0.0;  ///< radians
  double scale = 1.0;

  friend bool operator==(const Similarity&, const Similarity&) = default;
};

/// A similarity with its sine and cosine worked out, for mapping many points.
class SimilarityMap {
 public:
  explicit SimilarityMap(const Similarity& similarity) : x_(similarity.x), y_(similarity.y) {
    const SinCos turn = SinCosOf(similarity.angle);
    cosine_ = similarity.scale * turn.cosine;
    sine_ = similarity.scale * turn.sine;
  }

  Point operator*(Point p) const {
    return {x_ + (cosine_ * p.x - sine_ * p.y), y_ + (sine_ * p.x + cosine_ * p.y)};
  }

 private:
  double x_;
  double y_;
  double cosine_;
  double sine_;
};

inline Point operator*(const Similarity& to_from, Point p) {
  return SimilarityMap(to_from) * p;
}

/// First `right`, then `left`.
Similarity operator*(const Similarity& left, const Similarity& right);

/// The way back. Needs a scale that is not 0.
Similarity Inverse(const Similarity& similarity);

/// The same angle in (-pi, pi]; not a number where `radians` is not finite.
double NormalizedAngle(double radians);

}  // namespace orvandel
