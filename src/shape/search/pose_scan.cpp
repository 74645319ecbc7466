#include "shape/search/pose_scan.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>

#include "base/geometry.h"
#include "base/rounding.h"
#include "shape/search/visibility.h"

namespace orvandel::shape {
namespace {

/// How many of the groups of points each stage ends with, in sixths of all.
constexpr std::size_t kStageSixths[kStages] = {1, 2, 4, 6};

/// Share of the votes due after each stage that a position must have. Votes come unevenly, the more so the fewer
/// points; what falls behind by more is not worth the rest.
constexpr float kShareAfterStage[kStages] = {0.75F, 0.9F, 0.97F, 1.0F};

/// A position that shows a smaller share of the points is not looked at.
constexpr float kLeastVisibleShare = static_cast<float>(kLeastVisible);

/// Slope of the chord of the square root between kLeastVisible and 1. The chord lies below the root, so that it never asks
/// for too much.
constexpr float kChordSlope = 0.613F;

constexpr double kBinsPerRadian = kDirectionBins / kTwoPi;

}  // namespace

std::uint8_t OutsideVoteFor(float threshold) {
  return static_cast<std::uint8_t>(kChordSlope * kFullVote * threshold + 0.75F);
}

CoarsePoints ToCoarsePoints(const EdgePoints& points) {
  CoarsePoints coarse;
  coarse.size = std::min(points.size, kMaxCoarsePoints);
  for (std::size_t i = 0; i < coarse.size; ++i) {
    coarse.x[i] = points.x[i];
    coarse.y[i] = points.y[i];
    const Point at = {static_cast<double>(points.x[i]), static_cast<double>(points.y[i])};
    coarse.reach = std::max(coarse.reach, std::sqrt(Dot(at, at)));
    const double direction =
        ArcTan2(static_cast<double>(points.normal_y[i]), static_cast<double>(points.normal_x[i]));
    coarse.direction[i] = static_cast<float>(kBinsPerRadian * direction + kDirectionBins);
  }
  return coarse;
}

void PoseScan::Start(const ResponseMaps& maps) {
  maps_ = &maps;
  kernels_ = &CoarseKernelsOf(ActiveSimdLevel());
}

void PoseScan::Run(const CoarsePoints& points, double scale, double angle, float threshold,
                   std::uint32_t pose, RowRange rows, std::vector<GridHit>& hits) {
  threshold_ = threshold;
  pose_ = pose;
  share_of_vote_ = 1.0F / static_cast<float>(kFullVote * points.size);
  PlacePoints(points, scale, angle);
  std::uint8_t limits[kStages];
  for (std::size_t stage = 0; stage < kStages; ++stage) {
    const auto num_points = static_cast<float>(std::min(table_.ends[stage], points.size));
    limits[stage] = static_cast<std::uint8_t>(kShareAfterStage[stage] * threshold *
                                              static_cast<float>(kFullVote) * num_points);
  }
  const PositionRange range = {maps_->Origin(), maps_->Stride(), maps_->Width(), rows.begin,
                               rows.end};
  const auto num_blocks = static_cast<std::size_t>((range.width - 1) / kBlockColumns + 1) *
                          static_cast<std::size_t>((rows.end - rows.begin - 1) / kBlockRows + 1);
  if (hits_.size() < num_blocks * kBlockSums) {
    block_sums_.resize(num_blocks * kBlockSums);
    block_places_.resize(num_blocks);
    hits_.resize(num_blocks * kBlockSums);
  }
  const std::size_t num_hits = kernels_->scan(
      range, table_, limits, {block_sums_.data(), block_places_.data()}, hits_.data());
  for (std::size_t i = 0; i < num_hits; ++i)
    TakeHit(hits_[i], hits);
}

void PoseScan::PlacePoints(const CoarsePoints& points, double scale, double angle) {
  num_points_ = points.size;
  const SinCos turn = SinCosOf(angle);
  const std::size_t groups = (points.size + kPointGroup - 1) / kPointGroup;
  const DirectedPoints directed = {points.x.data(), points.y.data(), points.direction.data(),
                                   groups * kPointGroup};
  PosePlacing placing = {};
  placing.cosine = static_cast<float>(scale * turn.cosine);
  placing.sine = static_cast<float>(scale * turn.sine);
  const double bins = kBinsPerRadian * NormalizedAngle(angle);
  placing.turn = static_cast<float>(bins + kDirectionBins);
  placing.stride = static_cast<std::int32_t>(maps_->Stride());
  placing.plane_size = static_cast<std::int32_t>(maps_->PlaneSize());
  kernels_->place_points(directed, placing, dx_.data(), dy_.data(), offsets_.data());
  // Rounding adds half a position.
  reach_ = static_cast<std::int32_t>(scale * points.reach) + 1;
  // Places of the last group that have no point read the map of nothing.
  for (std::size_t i = points.size; i < groups * kPointGroup; ++i)
    offsets_[i] = kDirectionBins * placing.plane_size;
  table_.offsets = offsets_.data();
  for (std::size_t stage = 0; stage < kStages; ++stage)
    table_.ends[stage] = (groups * kStageSixths[stage] + 5) / 6 * kPointGroup;
}

void PoseScan::TakeHit(const CoarseHit& hit, std::vector<GridHit>& hits) const {
  const bool is_inside = hit.x >= reach_ && hit.x + reach_ < maps_->Width() && hit.y >= reach_ &&
                         hit.y + reach_ < maps_->Height();
  const float score = is_inside ? static_cast<float>(hit.votes) * share_of_vote_ : BorderScore(hit);
  if (score < threshold_) return;
  hits.push_back({score, hit.x, hit.y, pose_});
}

/// Near the border: of what can be seen.
float PoseScan::BorderScore(const CoarseHit& hit) const {
  const std::size_t num_visible = CountPointsWithin(hit.x, hit.y);
  const auto num_outside = static_cast<int>(num_points_ - num_visible);
  const auto all = static_cast<float>(num_points_);
  const auto visible = static_cast<float>(num_visible);
  if (visible < kLeastVisibleShare * all) return 0.0F;
  const auto votes = static_cast<float>(hit.votes - maps_->OutsideVote() * num_outside);
  return votes / (static_cast<float>(kFullVote) * std::sqrt(visible * all));
}

std::size_t PoseScan::CountPointsWithin(std::int32_t x, std::int32_t y) const {
  const auto width = static_cast<std::uint32_t>(maps_->Width());
  const auto height = static_cast<std::uint32_t>(maps_->Height());
  std::uint32_t count = 0;
  for (std::size_t i = 0; i < num_points_; ++i) {
    // Below 0 is beyond any size, too.
    const auto column = static_cast<std::uint32_t>(x + dx_[i]);
    const auto row = static_cast<std::uint32_t>(y + dy_[i]);
    count += (column < width ? 1U : 0U) & (row < height ? 1U : 0U);
  }
  return count;
}

}  // namespace orvandel::shape
