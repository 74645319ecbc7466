#include "shape/search/overlap.h"

#include <utility>

namespace orvandel::shape {
namespace {

double Cross(Point a, Point b) {
  return a.x * b.y - a.y * b.x;
}

/// What of the polygon lies to the right of the line from `from` to `to` (inside, on the screen).
void Clip(const std::vector<Point>& polygon, Point from, Point to, std::vector<Point>& clipped) {
  clipped.clear();
  const Point along = to - from;
  for (std::size_t i = 0; i < polygon.size(); ++i) {
    const Point p = polygon[i];
    const Point next = polygon[(i + 1) % polygon.size()];
    const double here = Cross(along, p - from);
    const double there = Cross(along, next - from);
    if (here >= 0.0) clipped.push_back(p);
    if ((here > 0.0 && there < 0.0) || (here < 0.0 && there > 0.0))
      clipped.push_back(p + (here / (here - there)) * (next - p));
  }
}

}  // namespace

double AreaOf(std::span<const Point> polygon) {
  double twice = 0.0;
  for (std::size_t i = 0; i < polygon.size(); ++i)
    twice += Cross(polygon[i] - polygon[0], polygon[(i + 1) % polygon.size()] - polygon[0]);
  return 0.5 * twice;
}

bool IsInside(std::span<const Point> polygon, Point p) {
  for (std::size_t i = 0; i < polygon.size(); ++i) {
    const Point from = polygon[i];
    if (Cross(polygon[(i + 1) % polygon.size()] - from, p - from) < 0.0) return false;
  }
  return !polygon.empty();
}

double SharedArea(std::span<const Point> a, std::span<const Point> b, OverlapBuffers& buffers) {
  buffers.first.assign(a.begin(), a.end());
  for (std::size_t i = 0; i < b.size() && !buffers.first.empty(); ++i) {
    Clip(buffers.first, b[i], b[(i + 1) % b.size()], buffers.second);
    std::swap(buffers.first, buffers.second);
  }
  return buffers.first.size() < 3 ? 0.0 : AreaOf(buffers.first);
}

}  // namespace orvandel::shape
