#include "shape/search/coarse_search.h"

#include <algorithm>

#include "base/rounding.h"

namespace orvandel::shape {
namespace {

/// Poses lie so close that the farthest point moves by this much from one to the next, grid positions.
constexpr double kRimStep = 1.5;

/// The search of one grid, a wave of poses at a time.
class GridSearch {
 public:
  GridSearch(const ResponseMaps& maps, const CoarseLimits& limits, double grid_pixels,
             float best_score, WorkerTeam& team, CoarseBuffers& buffers)
      : limits_(limits),
        grid_pixels_(grid_pixels),
        team_(team),
        buffers_(buffers),
        best_(best_score),
        floor_(limits.least_score) {
    for (std::size_t i = 0; i < team.Size(); ++i)
      buffers.scans[i].Start(maps);
    buffers.list.Clear();
    buffers.tried.clear();
  }

  float BestScore() const { return best_; }
  float Threshold() const { return std::max(floor_, limits_.share_of_best * best_); }

  /// All positions at the poses `first` to `end` - 1 of those tried, at most kWave.
  void TryWave(const CoarsePoints& points, std::size_t first, std::size_t end) {
    const float threshold = Threshold();
    team_.Run(end - first, [&](std::size_t i, std::size_t worker) {
      const TriedPose& pose = buffers_.tried[first + i];
      buffers_.wave_hits[i].clear();
      buffers_.scans[worker].Run(points, pose.scale / grid_pixels_, pose.angle, threshold,
                                 static_cast<std::uint32_t>(first + i), buffers_.wave_hits[i]);
    });
    for (std::size_t i = 0; i < end - first; ++i)
      TakeHits(buffers_.wave_hits[i]);
    if (buffers_.list.Size() > limits_.max_hits) KeepBetterHalf();
  }

 private:
  void TakeHits(const std::vector<GridHit>& hits) {
    for (const GridHit& hit : hits)
      best_ = std::max(best_, hit.score);
    buffers_.list.Hits().insert(buffers_.list.Hits().end(), hits.begin(), hits.end());
  }

  /// Drops hits below the threshold of now; if still too many are left, also those below their median.
  void KeepBetterHalf() {
    buffers_.list.DropBelow(Threshold());
    if (buffers_.list.Size() <= limits_.max_hits) return;
    floor_ = std::max(floor_, buffers_.list.MedianScore());
    buffers_.list.DropBelow(floor_);
  }

  const CoarseLimits& limits_;
  double grid_pixels_;
  WorkerTeam& team_;
  CoarseBuffers& buffers_;
  float best_;
  float floor_;
};

}  // namespace

void SearchGrid(const ShapeModel& model, const ResponseMaps& maps, bool is_pooled,
                const CoarseRange& range, const CoarseLimits& limits, const Deadline& deadline,
                WorkerTeam& team, float& best_score, CoarseBuffers& buffers,
                std::vector<Candidate>& candidates) {
  const auto grid_pixels = static_cast<double>(std::int64_t{1} << range.level);
  const double gradient_pixels = is_pooled ? 0.5 * grid_pixels : grid_pixels;
  GridSearch search(maps, limits, grid_pixels, best_score, team, buffers);
  std::vector<TriedPose>& tried = buffers.tried;

  // The scale moves the farthest point by as much per step wherever it stands.
  const double scale_step = kRimStep * grid_pixels / model.radius;
  const double scales = range.max_scale - range.min_scale;
  const int num_scales = 1 + static_cast<int>(scales / scale_step);
  for (int i = 0; i < num_scales; ++i) {
    const double scale = range.min_scale + scales * (i + 0.5) / num_scales;
    const CoarsePoints points = ToCoarsePoints(model.LevelOf(gradient_pixels / scale).coarse);
    const double angle_step = kRimStep * grid_pixels / (model.radius * scale);
    const int num_angles = 1 + static_cast<int>(range.angle_extent / angle_step);
    std::size_t first = tried.size();
    for (int k = 0; k < num_angles && !deadline.HasPassed(); ++k) {
      const double angle = range.angle_start + range.angle_extent * (k + 0.5) / num_angles;
      tried.push_back({angle, scale, angle_step, scale_step});
      if (tried.size() - first < kWave && k + 1 < num_angles) continue;
      search.TryWave(points, first, tried.size());
      first = tried.size();
    }
  }
  best_score = search.BestScore();

  const bool turns_fully = range.angle_extent >= kTwoPi;
  for (const std::uint32_t i :
       buffers.list.ChooseBest(tried, maps.Width(), maps.Height(), turns_fully, search.Threshold(),
                               limits.max_candidates)) {
    const GridHit& hit = buffers.list.Hits()[i];
    const TriedPose& pose = tried[hit.pose];
    candidates.push_back({(hit.x + 0.5) * grid_pixels - 0.5, (hit.y + 0.5) * grid_pixels - 0.5,
                          pose.angle, pose.scale, hit.score});
  }
}

}  // namespace orvandel::shape
