#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "shape/model/shape_model.h"
#include "shape/search/coarse_kernels.h"
#include "shape/search/response_maps.h"

namespace orvandel::shape {

/// Byte sums of full votes hold so many points.
inline constexpr std::size_t kMaxCoarsePoints = 63;
inline constexpr std::size_t kMaxCoarsePadded =
    (kMaxCoarsePoints + kPointGroup - 1) / kPointGroup * kPointGroup;

/// Coarse points of a model level with the directions of their normals.
struct CoarsePoints {
  std::size_t size = 0;
  double reach = 0.0;  ///< of the farthest one
  std::array<float, kMaxCoarsePadded> x = {};
  std::array<float, kMaxCoarsePadded> y = {};
  std::array<float, kMaxCoarsePadded> direction = {};
};

CoarsePoints ToCoarsePoints(const EdgePoints& points);

/// A position that has enough votes at a pose.
struct GridHit {
  float score = 0.0F;  ///< 0 to 1
  std::uint16_t x = 0;
  std::uint16_t y = 0;
  std::uint32_t pose = 0;
};

/// Rows of a grid.
struct RowRange {
  std::int32_t begin = 0;
  std::int32_t end = 0;
};

/// What points beyond the grid are to get in its response maps, so that positions are asked for about the right votes at
/// a threshold.
///
/// A position is asked for votes of the geometric mean of visible and all points, so a few visible ones cannot beat a
/// whole pattern. That is close to a sum over the points: a visible one owes `kFullVote` times the threshold, one outside
/// about 0.39 of that; what it owes less, it gets as a vote.
std::uint8_t OutsideVoteFor(float threshold);

/// Looks at positions of a grid for one pose at a time. At least two fifths of the points must be visible.
class PoseScan {
 public:
  /// Gets ready for the positions of these maps, which are kept a reference of.
  void Start(const ResponseMaps& maps);

  /// Appends the positions of these rows that score at least `threshold`, row by row in pairs. Points outside should get
  /// OutsideVoteFor(threshold).
  ///
  /// @param scale  grid positions per pattern pixel
  /// @param pose   a number that goes into the hits
  void Run(const CoarsePoints& points, double scale, double angle, float threshold,
           std::uint32_t pose, RowRange rows, std::vector<GridHit>& hits);

 private:
  void PlacePoints(const CoarsePoints& points, double scale, double angle);
  void TakeHit(const CoarseHit& hit, std::vector<GridHit>& hits) const;
  float BorderScore(const CoarseHit& hit) const;
  std::size_t CountPointsWithin(std::int32_t x, std::int32_t y) const;

  const ResponseMaps* maps_ = nullptr;
  const CoarseKernels* kernels_ = nullptr;
  std::array<std::int32_t, kMaxCoarsePadded> dx_ = {};
  std::array<std::int32_t, kMaxCoarsePadded> dy_ = {};
  std::array<std::int32_t, kMaxCoarsePadded> offsets_ = {};
  PoseOffsets table_ = {};
  std::size_t num_points_ = 0;
  std::int32_t reach_ = 0;  ///< of the points, grid positions
  float threshold_ = 0.0F;
  float share_of_vote_ = 0.0F;  ///< of all that the points can get
  std::uint32_t pose_ = 0;
  std::vector<CoarseHit> hits_;
  std::vector<std::uint8_t> block_sums_;
  std::vector<BlockPlace> block_places_;
};

}  // namespace orvandel::shape
