// Replacement of contour points by evenly spaced ones.

#include <algorithm>
#include <cmath>
#include <new>
#include <vector>

#include "contours/ctd.h"
#include "contours/point_arrays.h"
#include "platform/numbers.h"
#include "platform/trigonometry.h"

namespace orvandel {
namespace {

/// A piece that would need more points than this is a stray coordinate, not a contour.
constexpr double kMostPointsOfPiece = 16777216.0;

/// Directions further out than this are not directions; turning them back would take for ever.
constexpr double kLargestDirection = 1e6;

/// Circular mean of two directions, in [0, 2 pi]; 0 where they have none.
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

struct Position {
  double x;
  double y;
};

/// The new point arrays, growing as points arrive.
class ResampledPoints {
 public:
  explicit ResampledPoints(std::int32_t num_points) : capacity_(2 * std::int64_t{num_points} + 10) {
    AllocateOrThrow(arrays_);
  }

  void Emit(Position position, double direction, std::uint32_t flag) {
    const auto next = static_cast<std::size_t>(count_);
    arrays_.x[next] = position.x;
    arrays_.y[next] = position.y;
    arrays_.g[next] = direction;
    arrays_.f[next] = flag;
    ++count_;
    if (count_ + 5 >= capacity_) Grow();
  }

  std::int32_t Count() const { return static_cast<std::int32_t>(count_); }

  void MoveInto(CCrawler& set) {
    arrays_.MoveInto(set);
    set.point_count = Count();
    set.point_capacity = static_cast<std::int32_t>(capacity_);
  }

 private:
  void AllocateOrThrow(PointArrays& arrays) const {
    // The set counts its points and its capacity in 32 bits.
    if (capacity_ > std::numeric_limits<std::int32_t>::max() || !arrays.AllocateUnset(capacity_)) {
      throw std::bad_alloc();
    }
  }

  void Grow() {
    capacity_ *= 2;
    PointArrays larger;
    AllocateOrThrow(larger);
    std::copy_n(arrays_.x.get(), count_, larger.x.get());
    std::copy_n(arrays_.y.get(), count_, larger.y.get());
    std::copy_n(arrays_.g.get(), count_, larger.g.get());
    std::copy_n(arrays_.f.get(), count_, larger.f.get());
    arrays_ = std::move(larger);
  }

  std::int64_t capacity_;
  std::int64_t count_ = 0;
  PointArrays arrays_;
};

class Resampler {
 public:
  explicit Resampler(const CCrawler& set)
      : set_(set), step_(set.step > 0 ? set.step : 1.0), out_(set.point_count) {}

  ContourRecord Resample(const ContourRecord& contour) {
    const std::int32_t start = out_.Count();
    if (contour.size < 1) return {start, 0, contour.closed};

    const std::int32_t first = contour.start;
    const std::int32_t last = first + contour.size - 1;
    EmitUnchanged(first);
    Position current = At(first);
    for (std::int32_t j = first + 1; j < last; ++j) {
      while (Distance(current, At(j)) < set_.min_dist && j < last - 1)
        ++j;
      current = EmitTowards(current, j);
    }
    EmitUnchanged(last);
    return {start, out_.Count() - start, contour.closed};
  }

  void MoveInto(CCrawler& set) { out_.MoveInto(set); }

 private:
  Position At(std::int32_t j) const { return {set_.x[j], set_.y[j]}; }

  static double Distance(Position a, Position b) {
    const double dx = b.x - a.x;
    const double dy = b.y - a.y;
    return std::sqrt(dx * dx + dy * dy);
  }

  void EmitUnchanged(std::int32_t j) { out_.Emit(At(j), set_.g[j], set_.f[j]); }

  /// Emits points `step` apart on the straight way from `from` to input point j, short of it but at
  /// least one.
  /// @return  the last of them.
  Position EmitTowards(Position from, std::int32_t j) {
    const Position target = At(j);
    const double distance = Distance(from, target);
    const double angle = ArcTan2(-(target.y - from.y), target.x - from.x);
    const double direction = MeanDirection(set_.g[j], set_.g[j + 1]);
    const std::uint32_t flag = set_.f[j - 1] != 0 || set_.f[j] != 0 ? 1 : 0;
    const bool one_point = !(distance / step_ - 1 <= kMostPointsOfPiece);

    const auto [sine, cosine] = SinCosOf(angle);
    for (int k = 1;; ++k) {
      const double t = k * step_;
      const Position point = {from.x + cosine * t, from.y - sine * t};
      out_.Emit(point, direction, flag);
      if (one_point || distance - t <= step_) return point;
    }
  }

  const CCrawler& set_;
  double step_;
  ResampledPoints out_;
};

void ResampleSet(CCrawler& set) {
  Resampler resampler(set);
  std::vector<ContourRecord> records;
  records.reserve(Records(set).size());
  for (const ContourRecord& contour : Records(set))
    records.push_back(resampler.Resample(contour));

  std::copy(records.begin(), records.end(), set.contours);
  resampler.MoveInto(set);
}

}  // namespace
}  // namespace orvandel

int ctd_resample(void* handle) {
  CCrawler& set = orvandel::SetOf(handle);
  if (orvandel::NumPoints(set) < 1) return 0;
  try {
    orvandel::ResampleSet(set);
  } catch (const std::bad_alloc&) {
    // The set is as it was.
  }
  return 0;
}
