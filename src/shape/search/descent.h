#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "platform/worker_team.h"
#include "shape/model/shape_model.h"
#include "shape/search/coarse_search.h"
#include "shape/search/scene_levels.h"
#include "shape/search/tracking.h"

namespace orvandel::shape {

/// The gradients that a step at a pose looks at.
const GradientPlane& GradientsAt(const ShapeModel& model, SceneLevels& scene, int level,
                                 const Candidate& pose);

/// What poses are allowed, and how many are wanted.
struct DescentOptions {
  double angle_start = 0.0;
  double angle_extent = 0.0;
  double min_scale = 1.0;
  double max_scale = 1.0;
  EdgeSign sign = EdgeSign::kSame;
  std::size_t num_wanted = 1;
  double share_of_best = 0.45;  ///< of the rank; what is worse is dropped
};

/// A pose on its way down the pyramid.
struct Tracked {
  Candidate pose;
  TrackingFit fit;
  int level = 0;       ///< that it was fitted on last
  int num_levels = 0;  ///< that it was fitted on so far
};

struct DescentBuffers {
  struct Placed {
    std::uint32_t index = 0;
    std::uint32_t next = 0;
  };
  std::array<TrackingBuffers, kWave> tracking;  ///< one a worker
  std::vector<Tracked> active;
  std::vector<Tracked> incoming;
  std::vector<Tracked> finer;
  std::vector<float> scores;
  std::vector<std::uint32_t> heads;
  std::vector<Placed> placed;
};

/// Tracks candidates from the grids' gradient levels down to where nothing is gained any more: the full resolution, or the
/// last level before noise or blur hide the edges. `candidates[i]` are those of `grids[i]`, coarsest first. What
/// arrives is appended to `arrived`.
class Descent {
 public:
  Descent(const ShapeModel& model, SceneLevels& scene, const DescentOptions& options,
          WorkerTeam& team, DescentBuffers& buffers)
      : model_(model), scene_(scene), options_(options), team_(team), buffers_(buffers) {}

  /// Starts over with the candidates of a grid, on the level of its gradients.
  void Enter(std::span<const Candidate> candidates, int level);

  /// One level down (or onto the first): refits all, drops the hopeless and the doubles, moves what has arrived.
  void FitLevel(int level, std::vector<Tracked>& arrived);

 private:
  TrackingStep StepOn(int level) const;
  void GiveUpWorst(std::vector<Tracked>& list);
  void TrackAllOn(int level, const TrackingStep& step, std::vector<Tracked>& list);
  void TrackOn(int level, const EdgePoints& points, const TrackingStep& step, std::size_t worker,
               Tracked& tracked);
  bool IsBlurred(const Tracked& before, const Tracked& now) const;
  void KeepBest(std::vector<Tracked>& list, std::span<const std::size_t> most, int level);
  bool HasArrived(const Tracked& tracked, int level) const;

  const ShapeModel& model_;
  SceneLevels& scene_;
  const DescentOptions& options_;
  WorkerTeam& team_;
  DescentBuffers& buffers_;
};

/// Best first; equals from the top down.
void SortByRank(std::vector<Tracked>& list);

/// The first steps of a final fit on the level where a pose arrived, with fine points; their measure is left in `tracked.fit`.
void FitFine(const ShapeModel& model, SceneLevels& scene, const DescentOptions& options,
             TrackingBuffers& tracking, Tracked& tracked);

/// The last steps, with all points.
void FitFinally(const ShapeModel& model, SceneLevels& scene, const DescentOptions& options,
                TrackingBuffers& tracking, Tracked& tracked);

/// A pose that arrived above the finest level, because noise or blur hide many edges below, fitted on there with what
/// edges there are: they are the more exact, and enough of them are left. Where they are not, the pose stays.
Tracked Polished(const ShapeModel& model, SceneLevels& scene, const DescentOptions& options,
                 TrackingBuffers& tracking, const Tracked& arrived);

/// The step that measures on a level with its threshold.
TrackingStep MeasuringStep(const SceneLevels& scene, int level, EdgeSign sign);

/// A pose in a level's pixels.
LevelPose OnLevel(const Candidate& pose, int level);

}  // namespace orvandel::shape
