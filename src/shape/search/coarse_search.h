#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "shape/model/shape_model.h"
#include "shape/search/coarse_kernels.h"
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

struct CoarseBuffers {
  struct Hit {
    float score = 0.0F;
    std::uint16_t x = 0;
    std::uint16_t y = 0;
    std::uint32_t pose = 0;
  };
  struct Pose {
    double angle = 0.0;
    double scale = 0.0;
    double angle_step = 0.0;
    double scale_step = 0.0;
  };
  struct Kept {
    std::uint32_t hit = 0;
    std::uint32_t next = 0;
  };
  std::vector<Hit> hits;
  std::vector<Hit> sorted;
  std::vector<Pose> poses;
  std::vector<CoarseHit> row_hits;
  std::vector<std::uint8_t> limits;
  std::vector<std::int16_t> outside_columns;
  std::vector<std::int16_t> outside_rows;
  std::vector<std::int16_t> reaches;
  std::vector<std::uint32_t> counts;
  std::vector<std::uint32_t> heads;
  std::vector<Kept> kept;
};

/// How far coarse points reach from the pattern's centre at a scale, grid positions; the frame that
/// response maps need.
std::int32_t ReachOf(const EdgePoints& points, double scale, int level);

/// Tries all rotations, scales and positions of the range, positions anywhere in the grid, and appends the best
/// candidates, best first, none within two steps of a better one.
///
/// Points beyond the grid are left out, and a position is asked for votes of the geometric mean of visible and all
/// points: so a few visible ones cannot beat a whole pattern. At least two fifths must be visible.
///
/// @param best_score  best so far, of coarser grids too; raised
void SearchGrid(const ShapeModel& model, const ResponseMaps& maps, bool is_pooled,
                const CoarseRange& range, const CoarseLimits& limits, float& best_score,
                CoarseBuffers& buffers, std::vector<Candidate>& candidates);

}  // namespace orvandel::shape
