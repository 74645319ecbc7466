#include "shape/search/coarse_search.h"

#include <algorithm>
#include <array>
#include <numeric>
#include <span>

#include "base/rounding.h"
#include "image/pyramid.h"

namespace orvandel::shape {
namespace {

/// Poses lie so close that the farthest point moves by this much from one to the next, grid positions.
constexpr double kRimStep = 1.5;

/// The poses of a wave are tried on so many rows of a grid before the next ones, so that the response maps of these rows stay
/// in the cache.
constexpr std::int32_t kStripRows = 48;

/// Scales and angles of a range, and the points for each scale.
void ListPoses(const ShapeModel& model, bool is_pooled, const CoarseRange& range,
               CoarseBuffers& buffers) {
  buffers.points.clear();
  buffers.tried.clear();
  const double grid_pixels = PixelsOf(range.level);
  const double gradient_pixels = is_pooled ? 0.5 * grid_pixels : grid_pixels;
  // The scale moves the farthest point by as much per step wherever it stands.
  const double scale_step = kRimStep * grid_pixels / model.radius;
  const double scales = range.max_scale - range.min_scale;
  const int num_scales = 1 + static_cast<int>(scales / scale_step);
  const EdgePoints* last = nullptr;
  for (int i = 0; i < num_scales; ++i) {
    const double scale = range.min_scale + scales * (i + 0.5) / num_scales;
    const EdgePoints& points = model.LevelOf(gradient_pixels / scale).coarse;
    if (&points != last) buffers.points.push_back(ToCoarsePoints(points));
    last = &points;
    const double angle_step = kRimStep * grid_pixels / (model.radius * scale);
    const int num_angles = 1 + static_cast<int>(range.angle_extent / angle_step);
    for (int k = 0; k < num_angles; ++k) {
      const double angle = range.angle_start + range.angle_extent * (k + 0.5) / num_angles;
      buffers.tried.push_back({angle, scale, angle_step, scale_step, buffers.points.size() - 1});
    }
  }
}

/// A step through so many poses that meets each once and spreads every first part of them over all: about the golden section
/// of their number, and without a common divisor with it.
std::size_t MixingStep(std::size_t num_poses) {
  std::size_t step = std::max<std::size_t>(1, num_poses * 618 / 1000);
  while (std::gcd(step, num_poses) != 1)
    ++step;
  return step;
}

/// The search of one grid, a wave of poses at a time.
class GridSearch {
 public:
  GridSearch(ResponseMaps& maps, const CoarseLimits& limits, double grid_pixels, float best_score,
             WorkerTeam& team, CoarseBuffers& buffers)
      : maps_(maps),
        limits_(limits),
        grid_pixels_(grid_pixels),
        team_(team),
        buffers_(buffers),
        best_(best_score),
        floor_(limits.least_score) {
    for (std::size_t i = 0; i < team.Size(); ++i)
      buffers.scans[i].Start(maps);
    buffers.list.Clear();
  }

  float BestScore() const { return best_; }
  float Threshold() const { return std::max(floor_, limits_.share_of_best * best_); }

  /// All positions at all poses.
  void Run(const Deadline& deadline) {
    const std::size_t num_poses = buffers_.tried.size();
    const std::size_t step = MixingStep(num_poses);
    for (std::size_t first = 0; first < num_poses && !deadline.HasPassed(); first += kWave) {
      std::array<std::size_t, kWave> wave = {};
      const std::size_t size = std::min(kWave, num_poses - first);
      for (std::size_t i = 0; i < size; ++i)
        wave[i] = (first + i) * step % num_poses;
      TryWave(std::span(wave).first(size));
      LimitHits(static_cast<double>(first + size) / static_cast<double>(num_poses));
    }
  }

 private:
  void TryWave(std::span<const std::size_t> wave) {
    const float threshold = Threshold();
    maps_.SetOutsideVote(OutsideVoteFor(threshold));
    const auto num_strips =
        static_cast<std::size_t>((maps_.Height() + kStripRows - 1) / kStripRows);
    const std::size_t num_tasks = num_strips * wave.size();
    if (buffers_.wave_hits.size() < num_tasks) buffers_.wave_hits.resize(num_tasks);
    team_.Run(num_tasks, [&](std::size_t i, std::size_t worker) {
      const std::size_t number = wave[i % wave.size()];
      const auto first_row = static_cast<std::int32_t>(i / wave.size()) * kStripRows;
      const RowRange rows = {first_row, std::min(first_row + kStripRows, maps_.Height())};
      const TriedPose& pose = buffers_.tried[number];
      buffers_.wave_hits[i].clear();
      buffers_.scans[worker].Run(buffers_.points[pose.points], pose.scale / grid_pixels_,
                                 pose.angle, threshold, static_cast<std::uint32_t>(number), rows,
                                 buffers_.wave_hits[i]);
    });
    for (std::size_t i = 0; i < num_tasks; ++i)
      TakeHits(buffers_.wave_hits[i]);
  }

  void TakeHits(const std::vector<GridHit>& hits) {
    for (const GridHit& hit : hits)
      best_ = std::max(best_, hit.score);
    buffers_.list.Hits().insert(buffers_.list.Hits().end(), hits.begin(), hits.end());
  }

  /// Drops hits below the threshold of now; if still more are left than this share of the poses is likely to add to those that
  /// can be kept of all, also the worse half.
  void LimitHits(double share) {
    // The first poses say little about the others.
    constexpr double kLeastShare = 0.1;
    const auto most = static_cast<std::size_t>((kLeastShare + (1.0 - kLeastShare) * share) *
                                               static_cast<double>(limits_.max_hits));
    if (buffers_.list.Size() <= most) return;
    buffers_.list.DropBelow(Threshold());
    if (buffers_.list.Size() <= most) return;
    floor_ = std::max(floor_, buffers_.list.UpperHalfScore());
    buffers_.list.DropBelow(floor_);
  }

  ResponseMaps& maps_;
  const CoarseLimits& limits_;
  double grid_pixels_;
  WorkerTeam& team_;
  CoarseBuffers& buffers_;
  float best_;
  float floor_;
};

}  // namespace

void SearchGrid(const ShapeModel& model, ResponseMaps& maps, bool is_pooled,
                const CoarseRange& range, const CoarseLimits& limits, const Deadline& deadline,
                WorkerTeam& team, float& best_score, CoarseBuffers& buffers,
                std::vector<Candidate>& candidates) {
  const auto grid_pixels = PixelsOf(range.level);
  ListPoses(model, is_pooled, range, buffers);
  GridSearch search(maps, limits, grid_pixels, best_score, team, buffers);
  search.Run(deadline);
  best_score = search.BestScore();

  const bool turns_fully = range.angle_extent >= kTwoPi;
  for (const std::uint32_t i :
       buffers.list.ChooseBest(buffers.tried, maps.Width(), maps.Height(), turns_fully,
                               search.Threshold(), limits.max_candidates)) {
    const GridHit& hit = buffers.list.Hits()[i];
    const TriedPose& pose = buffers.tried[hit.pose];
    candidates.push_back({(hit.x + 0.5) * grid_pixels - 0.5, (hit.y + 0.5) * grid_pixels - 0.5,
                          pose.angle, pose.scale, hit.score});
  }
}

}  // namespace orvandel::shape
