#include "contours/resampler.h"

#include <cmath>
#include <limits>
#include <new>

#include "base/trigonometry.h"
#include "base/trigonometry_core.simd.h"

namespace orvandel {
namespace {

/// A piece that would need more points than this is a stray coordinate, not a contour.
constexpr double kMostPointsOfPiece = 16777216.0;

constexpr std::size_t kMostPoints = std::numeric_limits<std::int32_t>::max();

/// Unit vectors along the steps of a batch.
class UnitVectors {
 public:
  UnitVectors() : kernels_(UnitVectorKernelsOf(ActiveSimdLevel())) {}

  void Find(StepBatch& batch) const {
    bool all_near = true;
    for (int k = 0; k < kNumLanes; ++k)
      all_near &= IsNearPoint(batch.dy[k], batch.dx[k]);
    all_near ? kernels_.find_unit_vectors(batch) : FindOneByOne(batch);
  }

 private:
  static void FindOneByOne(StepBatch& batch) {
    for (int k = 0; k < kNumLanes; ++k) {
      const SinCos direction = SinCosOf(ArcTan2(-batch.dy[k], batch.dx[k]));
      batch.cosine[k] = direction.cosine;
      batch.sine[k] = direction.sine;
    }
  }

  const UnitVectorKernels& kernels_;
};

}  // namespace

/// Resamples one contour after the other.
class Resampler::Lane {
 public:
  Lane(const ContourSetView& contours, const ResampleOptions& options, PointList& points)
      : x_(contours.x.data()),
        y_(contours.y.data()),
        step_(options.step > 0 ? options.step : 1.0),
        min_dist_(options.min_dist),
        points_(&points) {}

  /// @param range  is written; outlives the contour's last step.
  void Begin(const ContourRecord& contour, Range& range) {
    range_ = &range;
    range = {points_, points_->size(), 0};
    if (contour.size < 1) return;
    target_ = contour.start + 1;
    last_ = contour.start + contour.size - 1;
    AppendEnd(contour.start);
    EndAtLastPoint();
  }

  bool IsActive() const { return target_ < last_; }

  /// Writes the way to the next input point that is not too near.
  void FindTarget(double& dx, double& dy) {
    for (;; ++target_) {
      dx = x_[target_] - at_x_;
      dy = y_[target_] - at_y_;
      distance_ = std::sqrt(dx * dx + dy * dy);
      if (!(distance_ < min_dist_ && target_ < last_ - 1)) return;
    }
  }

  /// Goes there, in steps that end short of it, but at least one.
  void Advance(double cosine, double sine) {
    const double from_x = at_x_;
    const double from_y = at_y_;
    const bool one_point = !(distance_ / step_ - 1 <= kMostPointsOfPiece);
    for (int k = 1;; ++k) {
      const double t = k * step_;
      Append(from_x + cosine * t, from_y - sine * t, target_);
      if (one_point || distance_ - t <= step_) break;
    }
    if (points_->size() > kMostPoints) throw std::bad_alloc();
    ++target_;
    EndAtLastPoint();
  }

 private:
  void EndAtLastPoint() {
    if (IsActive()) return;
    AppendEnd(last_);
    range_->count = points_->size() - range_->first;
  }

  void Append(double x, double y, std::int32_t source) {
    at_x_ = x;
    at_y_ = y;
    points_->push_back({x, y, source});
  }

  void AppendEnd(std::int32_t j) { Append(x_[j], y_[j], ~j); }

  const double* x_;
  const double* y_;
  double step_;
  double min_dist_;
  PointList* points_;
  Range* range_ = nullptr;
  std::int32_t target_ = 0;
  std::int32_t last_ = 0;
  double at_x_ = 0.0;
  double at_y_ = 0.0;
  double distance_ = 0.0;
};

Resampler::Resampler(const ContourSetView& contours, const ResampleOptions& options)
    : ranges_(contours.NumContours()) {
  std::vector<Lane> lanes;
  for (PointList& points : lane_points_) {
    points.reserve(contours.NumPoints() / lane_points_.size());
    lanes.emplace_back(contours, options, points);
  }

  const UnitVectors unit_vectors;
  StepBatch batch = {};
  std::size_t next = 0;
  for (;;) {
    bool any_active = false;
    for (std::size_t k = 0; k < lanes.size(); ++k) {
      Lane& lane = lanes[k];
      for (; !lane.IsActive() && next < contours.NumContours(); ++next)
        lane.Begin(contours.records[next], ranges_[next]);
      batch.dx[k] = 1.0;
      batch.dy[k] = 0.0;
      if (!lane.IsActive()) continue;
      lane.FindTarget(batch.dx[k], batch.dy[k]);
      any_active = true;
    }
    if (!any_active) return;

    unit_vectors.Find(batch);
    for (std::size_t k = 0; k < lanes.size(); ++k) {
      if (lanes[k].IsActive()) lanes[k].Advance(batch.cosine[k], batch.sine[k]);
    }
  }
}

std::span<const ResampledPoint> Resampler::Points(std::size_t i) const {
  const auto& [points, first, count] = ranges_[i];
  return std::span(points->data() + first, count);
}

std::int64_t Resampler::NumPoints() const {
  std::size_t sum = 0;
  for (const PointList& points : lane_points_)
    sum += points.size();
  return static_cast<std::int64_t>(sum);
}

}  // namespace orvandel
