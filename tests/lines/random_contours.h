#pragma once

#include <cmath>
#include <cstdint>
#include <vector>

#include "tests/lines/contour_shapes.h"
#include "tests/support/uniform_random.h"

namespace orvandel::test {

/// A contour as images give them, and odder: straight ranges, arcs and sharp corners, about one
/// pixel a point, with noise; often closed on itself, often with old flags.
class RandomContour {
 public:
  explicit RandomContour(UniformRandom& random) : random_(random) {}

  TestContour Make() {
    x_ = random_.Real(-50, 300);
    y_ = random_.Real(-50, 300);
    heading_ = random_.Real(-kHalfTurn, kHalfTurn);
    noise_ = random_.OneIn(3) ? 0 : random_.Real(0, 0.3);
    edge_side_ = random_.OneIn(2) ? kQuarterTurn : -kQuarterTurn;
    contour_.closed = random_.OneIn(2);
    const int num_ranges = random_.Integer(0, 6);
    for (int i = 0; i < num_ranges; ++i)
      AddRange();
    if (contour_.closed && random_.OneIn(2)) AddReturnToStart();
    return contour_;
  }

 private:
  void AddRange() {
    heading_ += random_.OneIn(3) ? random_.Real(-2, 2) : random_.Real(-0.05, 0.05);
    const double turn_per_point = random_.OneIn(2) ? 0 : random_.Real(-0.2, 0.2);
    const int count = random_.Integer(1, 40);
    for (int i = 0; i < count; ++i) {
      AddPoint();
      heading_ += turn_per_point;
    }
  }

  void AddPoint() {
    x_ += std::cos(heading_);
    y_ += std::sin(heading_);
    TestPoint point;
    point.x = x_ + random_.Real(-noise_, noise_);
    point.y = y_ + random_.Real(-noise_, noise_);
    point.g = -heading_ + edge_side_ + random_.Real(-0.5, 0.5);
    point.f = random_.OneIn(10) ? static_cast<std::uint32_t>(random_.Integer(0, 2)) : 0U;
    contour_.points.push_back(point);
  }

  /// Goes back along the heading of the contour's first points, so that the seam lies on a
  /// straight range.
  void AddReturnToStart() {
    if (contour_.points.size() < 12) return;
    const TestPoint first = contour_.points.front();
    const TestPoint later = contour_.points[8];
    const double heading = std::atan2(later.y - first.y, later.x - first.x);
    const int count = random_.Integer(4, 30);
    heading_ = heading + random_.Real(-0.02, 0.02);
    x_ = first.x - (count + 1) * std::cos(heading_);
    y_ = first.y - (count + 1) * std::sin(heading_);
    for (int i = 0; i < count; ++i)
      AddPoint();
  }

  UniformRandom& random_;
  TestContour contour_;
  double x_ = 0;
  double y_ = 0;
  double heading_ = 0;
  double noise_ = 0;
  double edge_side_ = 0;
};

inline std::vector<TestContour> RandomContours(UniformRandom& random, int most) {
  std::vector<TestContour> contours;
  const int count = random.Integer(0, most);
  for (int i = 0; i < count; ++i)
    contours.push_back(RandomContour(random).Make());
  return contours;
}

}  // namespace orvandel::test
