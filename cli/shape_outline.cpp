#include "cli/shape_outline.h"

#include <algorithm>
#include <cstddef>
#include <limits>
#include <optional>

#include "base/rounding.h"

namespace orvandel::cli {
namespace {

/// Neighbours of one edge lie so many usual spacings apart at most: corners and weak stretches leave
/// gaps, but two edges are not joined.
constexpr double kLargestGap = 4;

/// Half the length of a dash, of the usual spacing.
constexpr double kHalfDash = 0.6;

struct EdgePointAt {
  Point at;
  Point normal;
};

std::vector<EdgePointAt> ListOf(const shape::EdgePoints& points) {
  std::vector<EdgePointAt> list;
  for (std::size_t i = 0; i < points.size; ++i) {
    list.push_back(
        {{static_cast<double>(points.x[i]), static_cast<double>(points.y[i])},
         {static_cast<double>(points.normal_x[i]), static_cast<double>(points.normal_y[i])}});
  }
  return list;
}

double Distance(Point a, Point b) {
  const Point step = b - a;
  return Hypot(step.x, step.y);
}

/// The median distance of a point to its nearest one; 1 for a point alone.
double UsualSpacing(const std::vector<EdgePointAt>& points) {
  std::vector<double> nearest;
  for (const EdgePointAt& p : points) {
    double least = std::numeric_limits<double>::max();
    for (const EdgePointAt& q : points) {
      if (&p != &q) least = std::min(least, Distance(p.at, q.at));
    }
    nearest.push_back(least);
  }
  if (nearest.size() < 2) return 1;
  const auto middle = nearest.begin() + static_cast<std::ptrdiff_t>(nearest.size() / 2);
  std::nth_element(nearest.begin(), middle, nearest.end());
  return *middle;
}

/// The nearest point ahead along the edge, with the bright side on the left, where the edge runs on.
std::optional<Point> Next(const EdgePointAt& p, const std::vector<EdgePointAt>& points,
                          double largest_gap) {
  const Point along = {-p.normal.y, p.normal.x};
  std::optional<Point> next;
  double least = largest_gap;
  for (const EdgePointAt& q : points) {
    const Point step = q.at - p.at;
    const double ahead = Dot(step, along);
    const double aside = std::abs(Dot(step, p.normal));
    const double distance = Hypot(step.x, step.y);
    if (ahead <= 0 || aside > ahead || distance > least || Dot(p.normal, q.normal) < 0.3) continue;
    least = distance;
    next = q.at;
  }
  return next;
}

}  // namespace

std::vector<Polyline> JoinedPoints(const shape::EdgePoints& points) {
  const std::vector<EdgePointAt> list = ListOf(points);
  const double spacing = UsualSpacing(list);
  std::vector<Polyline> strokes;
  for (const EdgePointAt& p : list) {
    if (const auto next = Next(p, list, kLargestGap * spacing)) {
      strokes.push_back({{p.at, *next}, false});
    } else {
      const Point along = kHalfDash * spacing * Point{-p.normal.y, p.normal.x};
      strokes.push_back({{p.at - along, p.at + along}, false});
    }
  }
  return strokes;
}

}  // namespace orvandel::cli
