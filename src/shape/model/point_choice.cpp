#include "shape/model/point_choice.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <utility>

namespace orvandel::shape {
namespace {

/// Points taken so far, in square buckets whose side is the least distance or more: what is too close to a new point lies
/// in its bucket or a neighbour.
class SpacedSet {
 public:
  SpacedSet(Point low, Point high, double distance, std::size_t most_points)
      : low_(low),
        distance_(distance),
        side_(
            std::max({distance, (high.x - low.x) / kMostBuckets, (high.y - low.y) / kMostBuckets})),
        columns_(static_cast<std::size_t>((high.x - low.x) / side_) + 1),
        rows_(static_cast<std::size_t>((high.y - low.y) / side_) + 1),
        first_(columns_ * rows_, kNone) {
    taken_.reserve(most_points);
  }

  /// Takes the point unless it is too close to another.
  bool Add(Point p) {
    const auto column = static_cast<std::size_t>((p.x - low_.x) / side_);
    const auto row = static_cast<std::size_t>((p.y - low_.y) / side_);
    for (std::size_t y = row == 0 ? 0 : row - 1; y <= std::min(row + 1, rows_ - 1); ++y) {
      for (std::size_t x = column == 0 ? 0 : column - 1; x <= std::min(column + 1, columns_ - 1);
           ++x) {
        for (std::uint32_t i = first_[y * columns_ + x]; i != kNone; i = taken_[i].next) {
          const Point step = taken_[i].at - p;
          if (Dot(step, step) < distance_ * distance_) return false;
        }
      }
    }
    std::uint32_t& first = first_[row * columns_ + column];
    taken_.push_back({p, first});
    first = static_cast<std::uint32_t>(taken_.size() - 1);
    return true;
  }

 private:
  /// Each way: clearing more would take longer than they save, for points some of which lie very close together.
  static constexpr double kMostBuckets = 256.0;
  static constexpr std::uint32_t kNone = 0xffffffffu;
  struct Taken {
    Point at;
    std::uint32_t next;
  };
  Point low_;
  double distance_;
  double side_;
  std::size_t columns_;
  std::size_t rows_;
  std::vector<std::uint32_t> first_;
  std::vector<Taken> taken_;
};

struct Box {
  Point low;
  Point high;
};

Box BoxOf(const std::vector<EdgePoint>& points) {
  Box box = {points.front().at, points.front().at};
  for (const EdgePoint& point : points) {
    box.low = {std::min(box.low.x, point.at.x), std::min(box.low.y, point.at.y)};
    box.high = {std::max(box.high.x, point.at.x), std::max(box.high.y, point.at.y)};
  }
  return box;
}

/// Points with this distance from each other, strong ones first; no more than `most`.
std::vector<EdgePoint> Spaced(const std::vector<EdgePoint>& sorted, const Box& box, double distance,
                              std::size_t most) {
  SpacedSet taken(box.low, box.high, distance, most);
  std::vector<EdgePoint> chosen;
  chosen.reserve(most);
  for (const EdgePoint& point : sorted) {
    if (chosen.size() == most) break;
    if (taken.Add(point.at)) chosen.push_back(point);
  }
  return chosen;
}

/// Points along the outline lie side by side; steps of about the golden section through them spread every
/// first part of the list.
std::vector<EdgePoint> Interleaved(const std::vector<EdgePoint>& points) {
  std::vector<std::pair<double, std::size_t>> by_direction;
  by_direction.reserve(points.size());
  for (std::size_t i = 0; i < points.size(); ++i)
    by_direction.emplace_back(ArcTan2(points[i].at.y, points[i].at.x), i);
  std::sort(by_direction.begin(), by_direction.end());
  const std::size_t size = points.size();
  std::size_t step = std::max<std::size_t>(1, size * 618 / 1000);
  const auto common_divisor = [](std::size_t a, std::size_t b) {
    while (b != 0) {
      const std::size_t rest = a % b;
      a = b;
      b = rest;
    }
    return a;
  };
  while (common_divisor(step, size) != 1)
    ++step;
  std::vector<EdgePoint> interleaved;
  interleaved.reserve(size);
  for (std::size_t i = 0; i < size; ++i)
    interleaved.push_back(points[by_direction[i * step % size].second]);
  return interleaved;
}

double Cross(Point a, Point b) {
  return a.x * b.y - a.y * b.x;
}

}  // namespace

std::vector<EdgePoint> ChoosePoints(const std::vector<EdgePoint>& points, std::size_t wanted) {
  if (points.size() <= wanted) return Interleaved(points);
  std::vector<EdgePoint> sorted = points;
  std::stable_sort(sorted.begin(), sorted.end(),
                   [](const EdgePoint& a, const EdgePoint& b) { return a.strength > b.strength; });
  const Box box = BoxOf(points);
  const Point size = box.high - box.low;
  // The distance is found by bisection.
  double near = std::max({size.x, size.y, 1.0}) / 4096.0;
  double far = std::max({size.x, size.y, 1.0});
  std::vector<EdgePoint> best = {sorted.begin(),
                                 sorted.begin() + static_cast<std::ptrdiff_t>(wanted)};
  for (int round = 0; round < 14; ++round) {
    const double distance = std::sqrt(near * far);
    // One more tells that there are too many.
    std::vector<EdgePoint> chosen = Spaced(sorted, box, distance, wanted + 1);
    if (chosen.size() > wanted) {
      near = distance;
      chosen.resize(wanted);
    } else {
      far = distance;
    }
    if (chosen.size() == wanted) {
      best = std::move(chosen);
      if (round >= 10) break;
    }
  }
  return Interleaved(best);
}

std::vector<Point> ConvexHull(const std::vector<EdgePoint>& points) {
  std::vector<Point> sorted;
  sorted.reserve(points.size());
  for (const EdgePoint& point : points)
    sorted.push_back(point.at);
  std::sort(sorted.begin(), sorted.end(),
            [](Point a, Point b) { return a.x < b.x || (a.x == b.x && a.y < b.y); });
  std::vector<Point> hull;
  const auto add = [&hull](Point p, std::size_t least) {
    while (hull.size() >= least + 2 &&
           Cross(hull[hull.size() - 1] - hull[hull.size() - 2], p - hull[hull.size() - 1]) <= 0.0)
      hull.pop_back();
    hull.push_back(p);
  };
  for (const Point p : sorted)
    add(p, 0);
  const std::size_t upper = hull.size() - 1;
  for (std::size_t i = sorted.size(); i-- > 0;)
    add(sorted[i], upper);
  if (hull.size() > 1) hull.pop_back();
  return hull;
}

}  // namespace orvandel::shape
