#include "tests/plain/resampling.h"

#include <algorithm>
#include <cmath>
#include <new>
#include <utility>
#include <vector>

#include "base/rounding.h"
#include "base/trigonometry.h"
#include "contours/crawler_adapter.h"

namespace orvandel::plain {
namespace {

constexpr double kMostPointsOfPiece = 16777216.0;
constexpr double kLargestDirection = 1e6;

double MeanDirection(double a, double b) {
  if (!std::isfinite(a) || !std::isfinite(b)) return 0.0;
  const double low = std::min(a, b);
  const double high = std::max(a, b);
  double mean = high - low > kPi ? low - (kTwoPi - (high - low)) * 0.5 : low + (high - low) * 0.5;
  if (std::abs(mean) > kLargestDirection) return 0.0;
  while (mean < 0)
    mean += kTwoPi;
  while (mean > kTwoPi)
    mean -= kTwoPi;
  return mean;
}

struct Point {
  double x;
  double y;
  double g;
  std::uint32_t f;
};

class Resampler {
 public:
  explicit Resampler(const CCrawler& set) : set_(set), step_(set.step > 0 ? set.step : 1.0) {}

  ContourRecord Resample(const ContourRecord& contour) {
    const auto start = static_cast<std::int32_t>(points_.size());
    if (contour.size < 1) return {start, 0, contour.closed};

    const std::int32_t last = contour.start + contour.size - 1;
    EmitUnchanged(contour.start);
    for (std::int32_t j = contour.start + 1; j < last; ++j) {
      while (DistanceTo(j) < set_.min_dist && j < last - 1)
        ++j;
      EmitTowards(j);
    }
    EmitUnchanged(last);
    return {start, static_cast<std::int32_t>(points_.size()) - start, contour.closed};
  }

  const std::vector<Point>& Points() const { return points_; }

 private:
  double DistanceTo(std::int32_t j) const {
    const double dx = set_.x[j] - points_.back().x;
    const double dy = set_.y[j] - points_.back().y;
    return std::sqrt(dx * dx + dy * dy);
  }

  void EmitUnchanged(std::int32_t j) {
    points_.push_back({set_.x[j], set_.y[j], set_.g[j], set_.f[j]});
  }

  void EmitTowards(std::int32_t j) {
    const Point from = points_.back();
    const double distance = DistanceTo(j);
    const auto [sine, cosine] = SinCosOf(ArcTan2(-(set_.y[j] - from.y), set_.x[j] - from.x));
    const double direction = MeanDirection(set_.g[j], set_.g[j + 1]);
    const std::uint32_t flag = set_.f[j - 1] != 0 || set_.f[j] != 0 ? 1 : 0;
    const bool one_point = !(distance / step_ - 1 <= kMostPointsOfPiece);
    for (int k = 1;; ++k) {
      const double t = k * step_;
      points_.push_back({from.x + cosine * t, from.y - sine * t, direction, flag});
      if (one_point || distance - t <= step_) return;
    }
  }

  const CCrawler& set_;
  double step_;
  std::vector<Point> points_;
};

std::int64_t CapacityOf(std::int64_t num_before, std::int64_t num_after) {
  std::int64_t capacity = 2 * num_before + 10;
  while (num_after + 5 >= capacity)
    capacity *= 2;
  return capacity;
}

}  // namespace

void Resample(void* handle) {
  CCrawler& set = SetOf(handle);
  if (NumPoints(set) < 1) return;
  Resampler resampler(set);
  for (ContourRecord& contour : Records(set))
    contour = resampler.Resample(contour);

  const std::vector<Point>& points = resampler.Points();
  const std::int64_t capacity =
      CapacityOf(set.point_count, static_cast<std::int64_t>(points.size()));
  PointArrays arrays;
  if (!arrays.AllocateUnset(capacity)) throw std::bad_alloc();
  for (std::size_t k = 0; k < points.size(); ++k) {
    arrays.x[k] = points[k].x;
    arrays.y[k] = points[k].y;
    arrays.g[k] = points[k].g;
    arrays.f[k] = points[k].f;
  }
  arrays.count = static_cast<std::int32_t>(points.size());
  StorePoints(std::move(arrays), set);
}

}  // namespace orvandel::plain
