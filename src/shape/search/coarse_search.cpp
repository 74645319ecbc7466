#include "shape/search/coarse_search.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <span>

#include "base/geometry.h"
#include "base/rounding.h"

namespace orvandel::shape {
namespace {

/// Poses lie so close that the farthest point moves by this much from one to the next, grid positions.
constexpr double kRimStep = 1.5;

/// Poses whose hits are collected with the same threshold. It follows the best score only from wave to wave, so
/// that the poses of a wave may be looked at in any order, or at once.
constexpr std::size_t kWave = 8;

/// How many of the groups of points each stage ends with, in sixths of all.
constexpr std::size_t kStageSixths[kStages] = {1, 2, 4, 6};

/// Share of the votes due after each stage that a position must have. Votes come unevenly, the more so the fewer
/// points; what falls behind by more is not worth the rest.
constexpr float kShareAfterStage[kStages] = {0.45F, 0.65F, 0.75F, 1.0F};

/// Below this share of visible points a position is not looked at.
constexpr float kLeastVisible = 0.4F;

/// The chord of the square root between kLeastVisible and 1: below it, so it never asks for too much.
constexpr float kChordAll = 0.387F;
constexpr float kChordVisible = 0.613F;

constexpr std::size_t kMaxPoints = 63;
constexpr std::size_t kMaxGroups = (kMaxPoints + kPointGroup - 1) / kPointGroup;

constexpr std::size_t kMaxPadded = kMaxGroups * kPointGroup;

struct PosePoints {
  std::array<std::int32_t, kMaxPadded> dx;
  std::array<std::int32_t, kMaxPadded> dy;
  std::array<std::int32_t, kMaxPadded> offsets;
  PoseOffsets table;
};

/// Coarse points of a model level with the directions of their normals.
struct CoarsePoints {
  std::size_t size = 0;
  std::array<float, kMaxPadded> x = {};
  std::array<float, kMaxPadded> y = {};
  std::array<float, kMaxPadded> direction = {};
};

constexpr double kBinsPerRadian = kDirectionBins / kTwoPi;

CoarsePoints ToCoarsePoints(const EdgePoints& points) {
  CoarsePoints coarse;
  coarse.size = std::min(points.size, kMaxPoints);
  for (std::size_t i = 0; i < coarse.size; ++i) {
    coarse.x[i] = points.x[i];
    coarse.y[i] = points.y[i];
    const double direction =
        ArcTan2(static_cast<double>(points.normal_y[i]), static_cast<double>(points.normal_x[i]));
    coarse.direction[i] = static_cast<float>(kBinsPerRadian * direction + kDirectionBins);
  }
  return coarse;
}

double GridPixels(int level) {
  return static_cast<double>(std::int64_t{1} << level);
}

void PlacePoints(const CoarsePoints& points, const ResponseMaps& maps, double scale_in_grid,
                 double angle, const CoarseKernels& kernels, PosePoints& placed) {
  const SinCos turn = SinCosOf(angle);
  const std::size_t groups = (points.size + kPointGroup - 1) / kPointGroup;
  const DirectedPoints directed = {points.x.data(), points.y.data(), points.direction.data(),
                                   groups * kPointGroup};
  PosePlacing placing = {};
  placing.cosine = static_cast<float>(scale_in_grid * turn.cosine);
  placing.sine = static_cast<float>(scale_in_grid * turn.sine);
  const double turned = kBinsPerRadian * NormalizedAngle(angle);
  placing.turn = static_cast<float>(turned + kDirectionBins);
  placing.stride = static_cast<std::int32_t>(maps.Stride());
  placing.plane_size = static_cast<std::int32_t>(maps.PlaneSize());
  kernels.place_points(directed, placing, placed.dx.data(), placed.dy.data(),
                       placed.offsets.data());
  // Places of the last group that have no point read the map of nothing.
  for (std::size_t i = points.size; i < groups * kPointGroup; ++i)
    placed.offsets[i] = kDirectionBins * placing.plane_size;
  placed.table.offsets = placed.offsets.data();
  for (std::size_t stage = 0; stage < kStages; ++stage)
    placed.table.ends[stage] = (groups * kStageSixths[stage] + 5) / 6 * kPointGroup;
}

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

/// The search of one grid.
class GridSearch {
 public:
  GridSearch(const ResponseMaps& maps, const CoarseLimits& limits, float best_score,
             CoarseBuffers& buffers)
      : maps_(maps),
        limits_(limits),
        kernels_(CoarseKernelsOf(ActiveSimdLevel())),
        buffers_(buffers),
        best_(best_score),
        floor_(limits.least_score) {
    padded_width_ = (maps.Width() + kBlockColumns - 1) / kBlockColumns * kBlockColumns;
    buffers.limits.resize(kStages * static_cast<std::size_t>(padded_width_));
    buffers.row_hits.resize(static_cast<std::size_t>(kBlockRows * padded_width_));
    buffers.outside_columns.assign(static_cast<std::size_t>(padded_width_), 0);
    buffers.outside_rows.assign(static_cast<std::size_t>(maps.Height()), 0);
    buffers.hits.clear();
    buffers.poses.clear();
    threshold_ = Threshold();
  }

  float BestScore() const { return best_; }
  float Threshold() const { return std::max(floor_, limits_.share_of_best * best_); }

  void TryPose(const CoarsePoints& points, const CoarseBuffers::Pose& pose, double scale_in_grid) {
    PlacePoints(points, maps_, scale_in_grid, pose.angle, kernels_, placed_);
    num_points_ = static_cast<int>(points.size);
    CountOutsideAll();
    const VoteRule rule = RuleOf(threshold_);
    limited_outside_ = -1;
    buffers_.poses.push_back(pose);
    for (std::int32_t y = 0; y < maps_.Height(); y += kBlockRows)
      ScanRows(rule, y);
    if (buffers_.poses.size() % kWave == 0) EndWave();
  }

  void EndWave() {
    if (buffers_.hits.size() > limits_.max_hits) KeepBetterHalf();
    threshold_ = Threshold();
  }

 private:
  void CountOutsideAll() {
    std::int32_t reach = 0;
    for (int i = 0; i < num_points_; ++i)
      reach = std::max({reach, std::abs(placed_.dx[static_cast<std::size_t>(i)]),
                        std::abs(placed_.dy[static_cast<std::size_t>(i)])});
    buffers_.reaches.resize(static_cast<std::size_t>(reach) + 1);
    const auto size = static_cast<std::size_t>(num_points_);
    CountOutside(
        {placed_.dx.data(), size}, maps_.Width(), reach, buffers_.reaches,
        std::span(buffers_.outside_columns).first(static_cast<std::size_t>(maps_.Width())));
    CountOutside({placed_.dy.data(), size}, maps_.Height(), reach, buffers_.reaches,
                 buffers_.outside_rows);
  }

  /// In a column and a row with so many points outside each, no more than their sum are outside both.
  VoteRule RuleOf(float threshold) const {
    VoteRule rule = {};
    const auto all = static_cast<float>(num_points_);
    for (std::size_t stage = 0; stage < kStages; ++stage) {
      const float share = kShareAfterStage[stage] * static_cast<float>(placed_.table.ends[stage]) /
                          static_cast<float>(placed_.table.ends[kStages - 1]);
      const float per_point = static_cast<float>(kFullVote << kLimitShift) * threshold * share;
      rule.full[stage] = static_cast<std::int16_t>(per_point * all);
      rule.per_point[stage] = static_cast<std::int16_t>(per_point * kChordVisible);
      rule.least[stage] =
          static_cast<std::int16_t>(per_point * all * (kChordAll + kChordVisible * kLeastVisible));
    }
    return rule;
  }

  void ScanRows(const VoteRule& rule, std::int32_t y) {
    const std::int16_t upper = buffers_.outside_rows[static_cast<std::size_t>(y)];
    const auto below = static_cast<std::size_t>(std::min(y + 1, maps_.Height() - 1));
    const std::int16_t outside = std::max(upper, buffers_.outside_rows[below]);
    // Most rows have all points within, as the one before.
    if (outside != limited_outside_) {
      kernels_.limit_columns(buffers_.outside_columns.data(), padded_width_, outside, rule,
                             buffers_.limits.data());
      limited_outside_ = outside;
    }
    const std::size_t num_hits =
        kernels_.scan_rows(maps_.Origin() + y * maps_.Stride(), maps_.Stride(), placed_.table,
                           buffers_.limits.data(), padded_width_, buffers_.row_hits.data());
    for (std::size_t i = 0; i < num_hits; ++i)
      TakeHit(buffers_.row_hits[i], y);
  }

  void TakeHit(const CoarseHit& hit, std::int32_t first_row) {
    const std::int32_t x = hit.x;
    const std::int32_t y = first_row + hit.row;
    if (x >= maps_.Width() || y >= maps_.Height()) return;
    const int beyond_columns = buffers_.outside_columns[static_cast<std::size_t>(x)];
    const int beyond_rows = buffers_.outside_rows[static_cast<std::size_t>(y)];
    // Near a corner some points may be beyond both a column and a row.
    const int num_visible = beyond_columns > 0 && beyond_rows > 0
                                ? CountPointsWithin(x, y)
                                : num_points_ - beyond_columns - beyond_rows;
    const auto all = static_cast<float>(num_points_);
    const auto visible = static_cast<float>(num_visible);
    if (visible < kLeastVisible * all) return;
    const float score =
        static_cast<float>(hit.votes) / (static_cast<float>(kFullVote) * std::sqrt(visible * all));
    if (score < threshold_) return;
    best_ = std::max(best_, score);
    buffers_.hits.push_back({score, static_cast<std::uint16_t>(x), static_cast<std::uint16_t>(y),
                             static_cast<std::uint32_t>(buffers_.poses.size() - 1)});
  }

  int CountPointsWithin(std::int32_t x, std::int32_t y) const {
    int count = 0;
    for (int i = 0; i < num_points_; ++i) {
      const std::int32_t column = x + placed_.dx[static_cast<std::size_t>(i)];
      const std::int32_t row = y + placed_.dy[static_cast<std::size_t>(i)];
      count += column >= 0 && column < maps_.Width() && row >= 0 && row < maps_.Height() ? 1 : 0;
    }
    return count;
  }

  /// Drops hits below the threshold of now; if still too many are left, also those below their median.
  void KeepBetterHalf() {
    auto& hits = buffers_.hits;
    const auto drop_below = [&hits](float least) {
      hits.erase(
          std::remove_if(hits.begin(), hits.end(),
                         [least](const CoarseBuffers::Hit& hit) { return hit.score < least; }),
          hits.end());
    };
    drop_below(Threshold());
    if (hits.size() <= limits_.max_hits) return;
    auto& scratch = buffers_.sorted;
    scratch.assign(hits.begin(), hits.end());
    const auto middle = scratch.begin() + static_cast<std::ptrdiff_t>(scratch.size() / 2);
    std::nth_element(
        scratch.begin(), middle, scratch.end(),
        [](const CoarseBuffers::Hit& a, const CoarseBuffers::Hit& b) { return a.score < b.score; });
    floor_ = std::max(floor_, middle->score);
    drop_below(floor_);
  }

  const ResponseMaps& maps_;
  const CoarseLimits& limits_;
  const CoarseKernels& kernels_;
  CoarseBuffers& buffers_;
  PosePoints placed_ = {};
  int num_points_ = 0;
  std::int32_t padded_width_ = 0;
  int limited_outside_ = -1;  ///< points outside the rows that the limits are for
  float best_;
  float floor_;
  float threshold_ = 0.0F;
};

/// Best first; equals stay in their order.
void SortHits(CoarseBuffers& buffers) {
  static constexpr std::size_t kSteps = 1024;
  const auto step_of = [](const CoarseBuffers::Hit& hit) {
    const auto step = static_cast<std::size_t>(hit.score * static_cast<float>(kSteps));
    return kSteps - std::min(step, kSteps);
  };
  buffers.counts.assign(kSteps + 2, 0);
  for (const auto& hit : buffers.hits)
    ++buffers.counts[step_of(hit) + 1];
  for (std::size_t i = 1; i < buffers.counts.size(); ++i)
    buffers.counts[i] += buffers.counts[i - 1];
  buffers.sorted.resize(buffers.hits.size());
  for (const auto& hit : buffers.hits)
    buffers.sorted[buffers.counts[step_of(hit)]++] = hit;
}

/// Hits that have been kept, by place: cells of some positions' side, each with a list.
class KeptHits {
 public:
  KeptHits(CoarseBuffers& buffers, std::int32_t width, std::int32_t height, bool turns_fully)
      : buffers_(buffers),
        columns_(width / kSide + 1),
        rows_(height / kSide + 1),
        turns_fully_(turns_fully) {
    buffers.heads.assign(static_cast<std::size_t>(columns_) * static_cast<std::size_t>(rows_),
                         kNone);
    buffers.kept.clear();
  }

  /// Keeps the hit unless a kept one lies within two steps in every respect.
  bool Add(std::uint32_t index) {
    const auto& hit = buffers_.sorted[index];
    const std::int32_t column = hit.x / kSide;
    const std::int32_t row = hit.y / kSide;
    for (std::int32_t y = std::max(row - 1, 0); y <= std::min(row + 1, rows_ - 1); ++y) {
      for (std::int32_t x = std::max(column - 1, 0); x <= std::min(column + 1, columns_ - 1); ++x) {
        for (std::uint32_t i = Head(x, y); i != kNone; i = buffers_.kept[i].next) {
          if (AreClose(hit, buffers_.sorted[buffers_.kept[i].hit])) return false;
        }
      }
    }
    buffers_.kept.push_back({index, Head(column, row)});
    Head(column, row) = static_cast<std::uint32_t>(buffers_.kept.size() - 1);
    return true;
  }

 private:
  static constexpr std::uint32_t kNone = 0xffffffffu;
  static constexpr std::int32_t kSide = 2;
  static constexpr double kSteps = 2.1;  // two steps, whatever rounding says

  std::uint32_t& Head(std::int32_t x, std::int32_t y) {
    return buffers_.heads[static_cast<std::size_t>(y * columns_ + x)];
  }

  bool AreClose(const CoarseBuffers::Hit& a, const CoarseBuffers::Hit& b) const {
    if (std::abs(a.x - b.x) > kSide || std::abs(a.y - b.y) > kSide) return false;
    const auto& pose_a = buffers_.poses[a.pose];
    const auto& pose_b = buffers_.poses[b.pose];
    if (std::abs(pose_a.scale - pose_b.scale) > kSteps * pose_a.scale_step) return false;
    double apart = std::abs(pose_a.angle - pose_b.angle);
    if (turns_fully_) apart = std::min(apart, kTwoPi - apart);
    return apart <= kSteps * std::max(pose_a.angle_step, pose_b.angle_step);
  }

  CoarseBuffers& buffers_;
  std::int32_t columns_;
  std::int32_t rows_;
  bool turns_fully_;
};

}  // namespace

std::int32_t ReachOf(const EdgePoints& points, double scale, int level) {
  double farthest = 0.0;
  for (std::size_t i = 0; i < points.size; ++i) {
    const Point p = {static_cast<double>(points.x[i]), static_cast<double>(points.y[i])};
    farthest = std::max(farthest, Dot(p, p));
  }
  return static_cast<std::int32_t>(std::sqrt(farthest) * scale / GridPixels(level)) + 2;
}

void SearchGrid(const ShapeModel& model, const ResponseMaps& maps, bool is_pooled,
                const CoarseRange& range, const CoarseLimits& limits, float& best_score,
                CoarseBuffers& buffers, std::vector<Candidate>& candidates) {
  GridSearch search(maps, limits, best_score, buffers);
  const double grid_pixels = GridPixels(range.level);
  const double gradient_pixels = is_pooled ? 0.5 * grid_pixels : grid_pixels;
  const bool turns_fully = range.angle_extent >= kTwoPi;

  // The scale moves the farthest point by as much per step wherever it stands.
  const double scale_step = kRimStep * grid_pixels / model.radius;
  const int num_scales = 1 + static_cast<int>((range.max_scale - range.min_scale) / scale_step);
  for (int i = 0; i < num_scales; ++i) {
    const double scale =
        range.min_scale + (range.max_scale - range.min_scale) * (i + 0.5) / num_scales;
    const CoarsePoints points = ToCoarsePoints(model.LevelOf(gradient_pixels / scale).coarse);
    const double angle_step = kRimStep * grid_pixels / (model.radius * scale);
    const int num_angles = 1 + static_cast<int>(range.angle_extent / angle_step);
    for (int k = 0; k < num_angles; ++k) {
      const double angle = range.angle_start + range.angle_extent * (k + 0.5) / num_angles;
      search.TryPose(points, {angle, scale, angle_step, scale_step}, scale / grid_pixels);
    }
  }
  search.EndWave();
  best_score = search.BestScore();

  SortHits(buffers);
  KeptHits kept(buffers, maps.Width(), maps.Height(), turns_fully);
  const float threshold = search.Threshold();
  std::size_t num_kept = 0;
  for (std::uint32_t i = 0; i < buffers.sorted.size() && num_kept < limits.max_candidates; ++i) {
    const auto& hit = buffers.sorted[i];
    if (hit.score < threshold || !kept.Add(i)) continue;
    const auto& pose = buffers.poses[hit.pose];
    candidates.push_back({(hit.x + 0.5) * grid_pixels - 0.5, (hit.y + 0.5) * grid_pixels - 0.5,
                          pose.angle, pose.scale, hit.score});
    ++num_kept;
  }
}

}  // namespace orvandel::shape
