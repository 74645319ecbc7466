#include "shape/search/pose_scan.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <span>

#include "base/geometry.h"
#include "base/rounding.h"
#include "shape/search/visibility.h"

namespace orvandel::shape {
namespace {

/// How many of the groups of points each stage ends with, in sixths of all.
constexpr std::size_t kStageSixths[kStages] = {1, 2, 4, 6};

/// Share of the votes due after each stage that a position must have. Votes come unevenly, the more so the fewer
/// points; what falls behind by more is not worth the rest.
constexpr float kShareAfterStage[kStages] = {0.45F, 0.65F, 0.75F, 1.0F};

/// A position that shows a smaller share of the points is not looked at.
constexpr float kLeastVisibleShare = static_cast<float>(kLeastVisible);

/// The chord of the square root between kLeastVisible and 1: below it, so it never asks for too much.
constexpr float kChordAll = 0.387F;
constexpr float kChordVisible = 0.613F;

constexpr double kBinsPerRadian = kDirectionBins / kTwoPi;

/// Points that lie beyond 0 .. size - 1, for each position in it.
/// @param counts  scratch, `reach` + 1 entries; no step is longer than `reach`
void CountOutside(std::span<const std::int32_t> steps, std::int32_t size, std::int32_t reach,
                  std::span<std::int16_t> counts, std::span<std::int16_t> outside) {
  std::fill(outside.begin(), outside.end(), std::int16_t{0});
  // A step of -3 leads out of the first three positions, one of 3 out of the last three.
  for (const bool leftwards : {true, false}) {
    std::fill(counts.begin(), counts.end(), std::int16_t{0});
    for (const std::int32_t step : steps) {
      const std::int32_t length = leftwards ? -step : step;
      if (length > 0) ++counts[static_cast<std::size_t>(length)];
    }
    std::int16_t longer = 0;
    for (std::int32_t x = reach; x-- > 0;) {
      longer = static_cast<std::int16_t>(longer + counts[static_cast<std::size_t>(x) + 1]);
      if (x >= size) continue;
      const auto position = static_cast<std::size_t>(leftwards ? x : size - 1 - x);
      outside[position] = static_cast<std::int16_t>(outside[position] + longer);
    }
  }
}

}  // namespace

CoarsePoints ToCoarsePoints(const EdgePoints& points) {
  CoarsePoints coarse;
  coarse.size = std::min(points.size, kMaxCoarsePoints);
  for (std::size_t i = 0; i < coarse.size; ++i) {
    coarse.x[i] = points.x[i];
    coarse.y[i] = points.y[i];
    const double direction =
        ArcTan2(static_cast<double>(points.normal_y[i]), static_cast<double>(points.normal_x[i]));
    coarse.direction[i] = static_cast<float>(kBinsPerRadian * direction + kDirectionBins);
  }
  return coarse;
}

void PoseScan::Start(const ResponseMaps& maps) {
  maps_ = &maps;
  kernels_ = &CoarseKernelsOf(ActiveSimdLevel());
  padded_width_ = (maps.Width() + kBlockColumns - 1) / kBlockColumns * kBlockColumns;
  limits_.resize(kStages * static_cast<std::size_t>(padded_width_));
  row_hits_.resize(static_cast<std::size_t>(kBlockRows * padded_width_));
  outside_columns_.assign(static_cast<std::size_t>(padded_width_), 0);
  outside_rows_.assign(static_cast<std::size_t>(maps.Height()), 0);
}

void PoseScan::Run(const CoarsePoints& points, double scale, double angle, float threshold,
                   std::uint32_t pose, std::vector<GridHit>& hits) {
  threshold_ = threshold;
  pose_ = pose;
  PlacePoints(points, scale, angle);
  CountOutsideAll();
  const VoteRule rule = RuleOf(threshold);
  limited_outside_ = -1;
  for (std::int32_t y = 0; y < maps_->Height(); y += kBlockRows)
    ScanRows(rule, y, hits);
}

void PoseScan::PlacePoints(const CoarsePoints& points, double scale, double angle) {
  num_points_ = static_cast<int>(points.size);
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
  // Places of the last group that have no point read the map of nothing.
  for (std::size_t i = points.size; i < groups * kPointGroup; ++i)
    offsets_[i] = kDirectionBins * placing.plane_size;
  table_.offsets = offsets_.data();
  for (std::size_t stage = 0; stage < kStages; ++stage)
    table_.ends[stage] = (groups * kStageSixths[stage] + 5) / 6 * kPointGroup;
}

void PoseScan::CountOutsideAll() {
  std::int32_t reach = 0;
  for (int i = 0; i < num_points_; ++i)
    reach = std::max({reach, std::abs(dx_[static_cast<std::size_t>(i)]),
                      std::abs(dy_[static_cast<std::size_t>(i)])});
  reaches_.resize(static_cast<std::size_t>(reach) + 1);
  const auto size = static_cast<std::size_t>(num_points_);
  CountOutside({dx_.data(), size}, maps_->Width(), reach, reaches_,
               std::span(outside_columns_).first(static_cast<std::size_t>(maps_->Width())));
  CountOutside({dy_.data(), size}, maps_->Height(), reach, reaches_, outside_rows_);
}

/// In a column and a row with so many points outside each, no more than their sum are outside both.
VoteRule PoseScan::RuleOf(float threshold) const {
  VoteRule rule = {};
  const auto all = static_cast<float>(num_points_);
  for (std::size_t stage = 0; stage < kStages; ++stage) {
    const float share = kShareAfterStage[stage] * static_cast<float>(table_.ends[stage]) /
                        static_cast<float>(table_.ends[kStages - 1]);
    const float per_point = static_cast<float>(kFullVote << kLimitShift) * threshold * share;
    rule.full[stage] = static_cast<std::int16_t>(per_point * all);
    rule.per_point[stage] = static_cast<std::int16_t>(per_point * kChordVisible + 1.0F);
    rule.least[stage] = static_cast<std::int16_t>(per_point * all *
                                                  (kChordAll + kChordVisible * kLeastVisibleShare));
  }
  return rule;
}

void PoseScan::ScanRows(const VoteRule& rule, std::int32_t y, std::vector<GridHit>& hits) {
  const std::int16_t upper = outside_rows_[static_cast<std::size_t>(y)];
  const auto below = static_cast<std::size_t>(std::min(y + 1, maps_->Height() - 1));
  const std::int16_t outside = std::max(upper, outside_rows_[below]);
  // Most rows have all points within, as the one before.
  if (outside != limited_outside_) {
    kernels_->limit_columns(outside_columns_.data(), padded_width_, outside, rule, limits_.data());
    limited_outside_ = outside;
  }
  const std::size_t num_hits =
      kernels_->scan_rows(maps_->Origin() + y * maps_->Stride(), maps_->Stride(), table_,
                          limits_.data(), padded_width_, row_hits_.data());
  for (std::size_t i = 0; i < num_hits; ++i)
    TakeHit(row_hits_[i], y, hits);
}

void PoseScan::TakeHit(const CoarseHit& hit, std::int32_t first_row,
                       std::vector<GridHit>& hits) const {
  const std::int32_t x = hit.x;
  const std::int32_t y = first_row + hit.row;
  if (x >= maps_->Width() || y >= maps_->Height()) return;
  const int beyond_columns = outside_columns_[static_cast<std::size_t>(x)];
  const int beyond_rows = outside_rows_[static_cast<std::size_t>(y)];
  // Near a corner some points may be beyond both a column and a row.
  const int num_visible = beyond_columns > 0 && beyond_rows > 0
                              ? CountPointsWithin(x, y)
                              : num_points_ - beyond_columns - beyond_rows;
  const auto all = static_cast<float>(num_points_);
  const auto visible = static_cast<float>(num_visible);
  if (visible < kLeastVisibleShare * all) return;
  const float score =
      static_cast<float>(hit.votes) / (static_cast<float>(kFullVote) * std::sqrt(visible * all));
  if (score < threshold_) return;
  hits.push_back({score, hit.x, static_cast<std::uint16_t>(y), pose_});
}

int PoseScan::CountPointsWithin(std::int32_t x, std::int32_t y) const {
  int count = 0;
  for (int i = 0; i < num_points_; ++i) {
    const std::int32_t column = x + dx_[static_cast<std::size_t>(i)];
    const std::int32_t row = y + dy_[static_cast<std::size_t>(i)];
    count += column >= 0 && column < maps_->Width() && row >= 0 && row < maps_->Height() ? 1 : 0;
  }
  return count;
}

}  // namespace orvandel::shape
