#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/worker_team.h"
#include "shape/model/shape_model.h"
#include "shape/search/candidate_list.h"
#include "shape/search/deadline.h"
#include "shape/search/pose_scan.h"
#include "shape/search/response_maps.h"

namespace orvandel::shape {

/// A pose of the pattern's centre that the exhaustive search found worth tracking.
struct Candidate {
  double x = 0.0;  ///< scene pixels
  double y = 0.0;
  double angle = 0.0;  ///< radians
  double scale = 1.0;
  float score = 0.0F;  ///< of the stage that looked at it last, 0 to 1
};

/// Which poses are tried on a grid.
struct CoarseRange {
  int level = 0;  ///< of the pyramid; a grid position is a pixel there
  double angle_start = 0.0;
  double angle_extent = 0.0;
  double min_scale = 1.0;
  double max_scale = 1.0;
};

/// Which of them stay.
struct CoarseLimits {
  float least_score = 0.0F;    ///< of any candidate
  float share_of_best = 0.0F;  ///< candidates reach this share of the best score so far
  std::size_t max_hits = 0;    ///< positions in the list before close ones are removed
  std::size_t max_candidates = 0;
};

/// The most workers that a search is divided among; poses are tried in waves of as many.
inline constexpr std::size_t kWave = 8;

struct CoarseBuffers {
  std::array<PoseScan, kWave> scans;            ///< one a worker
  std::vector<std::vector<GridHit>> wave_hits;  ///< by rows and pose
  CandidateList list;
  std::vector<CoarsePoints> points;  ///< of each scale
  std::vector<TriedPose> tried;
};

/// Tries all rotations, scales and positions of the range, positions anywhere in the grid, and appends the best
/// candidates, best first, none within two steps of a better one. Ends early, with what it has, when the time is
/// up.
///
/// The threshold follows the best score from wave to wave of poses, which are mixed over the range, so that the first waves
/// tell how good the others are. The poses of a wave may be looked at in any order, or at once: the bits do not depend
/// on the team.
///
/// @param maps        what points outside get is set in them
/// @param best_score  best so far, of coarser grids too; raised
void SearchGrid(const ShapeModel& model, ResponseMaps& maps, bool is_pooled,
                const CoarseRange& range, const CoarseLimits& limits, const Deadline& deadline,
                WorkerTeam& team, float& best_score, CoarseBuffers& buffers,
                std::vector<Candidate>& candidates);

}  // namespace orvandel::shape
