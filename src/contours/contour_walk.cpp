#include "contours/contour_walk.h"

#include <cmath>
#include <limits>
#include <new>

#include "base/trigonometry.h"
#include "base/trigonometry_core.h"
#include "contours/heading_kernels.h"
#include "contours/point_arrays.h"

namespace orvandel {
namespace {

/// A piece that would need more points than this is a stray coordinate, not a contour.
constexpr double kMostPointsOfPiece = 16777216.0;

constexpr std::size_t kMostPoints = std::numeric_limits<std::int32_t>::max();

/// Walks one contour after the other.
class Walker {
 public:
  Walker(const CCrawler& set, std::vector<WalkedPoint>& trail)
      : x_(set.x),
        y_(set.y),
        step_(set.step > 0 ? set.step : 1.0),
        min_dist_(set.min_dist),
        trail_(&trail) {}

  /// @param stretch  is written; outlives the walk.
  void Begin(const ContourRecord& contour, WalkedStretch& stretch) {
    stretch_ = &stretch;
    stretch = {trail_, trail_->size(), 0};
    if (contour.size < 1) return;
    aim_ = contour.start + 1;
    last_ = contour.start + contour.size - 1;
    EmitEnd(contour.start);
    EndWhenThere();
  }

  bool IsUnderWay() const { return aim_ < last_; }

  /// Writes the way to the next input point that is not too near.
  void Aim(double& dx, double& dy) {
    for (;; ++aim_) {
      dx = x_[aim_] - at_x_;
      dy = y_[aim_] - at_y_;
      distance_ = std::sqrt(dx * dx + dy * dy);
      if (!(distance_ < min_dist_ && aim_ < last_ - 1)) return;
    }
  }

  /// Goes there, in steps that end short of it, but at least one.
  void Go(double cosine, double sine) {
    const double from_x = at_x_;
    const double from_y = at_y_;
    const bool one_point = !(distance_ / step_ - 1 <= kMostPointsOfPiece);
    for (int k = 1;; ++k) {
      const double t = k * step_;
      Emit(from_x + cosine * t, from_y - sine * t, aim_);
      if (one_point || distance_ - t <= step_) break;
    }
    if (trail_->size() > kMostPoints) throw std::bad_alloc();
    ++aim_;
    EndWhenThere();
  }

 private:
  void EndWhenThere() {
    if (IsUnderWay()) return;
    EmitEnd(last_);
    stretch_->count = trail_->size() - stretch_->first;
  }

  void Emit(double x, double y, std::int32_t source) {
    at_x_ = x;
    at_y_ = y;
    trail_->push_back({x, y, source});
  }

  void EmitEnd(std::int32_t j) { Emit(x_[j], y_[j], ~j); }

  const double* x_;
  const double* y_;
  double step_;
  double min_dist_;
  std::vector<WalkedPoint>* trail_;
  WalkedStretch* stretch_ = nullptr;
  std::int32_t aim_ = 0;
  std::int32_t last_ = 0;
  double at_x_ = 0.0;
  double at_y_ = 0.0;
  double distance_ = 0.0;
};

/// Finds the headings of a batch of steps.
class Compass {
 public:
  Compass() : kernels_(HeadingKernelsOf(ActiveSimdLevel())) {}

  void Find(HeadingBatch& batch) const {
    bool ordinary = true;
    for (int k = 0; k < kHeadingBatch; ++k)
      ordinary &= IsNearPoint(batch.dy[k], batch.dx[k]);
    ordinary ? kernels_.find_headings(batch) : FindOneByOne(batch);
  }

 private:
  static void FindOneByOne(HeadingBatch& batch) {
    for (int k = 0; k < kHeadingBatch; ++k) {
      const SinCos heading = SinCosOf(ArcTan2(-batch.dy[k], batch.dx[k]));
      batch.cosine[k] = heading.cosine;
      batch.sine[k] = heading.sine;
    }
  }

  const HeadingKernels& kernels_;
};

}  // namespace

ContourWalks::ContourWalks(const CCrawler& set, std::span<const ContourRecord> contours)
    : stretches_(contours.size()) {
  std::vector<Walker> walkers;
  for (std::vector<WalkedPoint>& trail : trails_) {
    trail.reserve(static_cast<std::size_t>(orvandel::NumPoints(set)) / trails_.size());
    walkers.emplace_back(set, trail);
  }

  const Compass compass;
  HeadingBatch batch = {};
  std::size_t next = 0;
  for (;;) {
    bool any_under_way = false;
    for (std::size_t k = 0; k < walkers.size(); ++k) {
      Walker& walker = walkers[k];
      for (; !walker.IsUnderWay() && next < contours.size(); ++next)
        walker.Begin(contours[next], stretches_[next]);
      batch.dx[k] = 1.0;
      batch.dy[k] = 0.0;
      if (!walker.IsUnderWay()) continue;
      walker.Aim(batch.dx[k], batch.dy[k]);
      any_under_way = true;
    }
    if (!any_under_way) return;

    compass.Find(batch);
    for (std::size_t k = 0; k < walkers.size(); ++k) {
      if (walkers[k].IsUnderWay()) walkers[k].Go(batch.cosine[k], batch.sine[k]);
    }
  }
}

std::span<const WalkedPoint> ContourWalks::Points(std::size_t i) const {
  const auto [trail, first, count] = stretches_[i];
  return std::span(trail->data() + first, count);
}

std::int64_t ContourWalks::NumPoints() const {
  std::size_t sum = 0;
  for (const std::vector<WalkedPoint>& trail : trails_)
    sum += trail.size();
  return static_cast<std::int64_t>(sum);
}

}  // namespace orvandel
