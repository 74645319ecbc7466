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

/// Looks at all positions of a grid for one pose at a time. Points beyond the grid are left out, and a position
/// is asked for votes of the geometric mean of visible and all points: so a few visible ones cannot beat a
/// whole pattern. At least two fifths must be visible.
class PoseScan {
 public:
  /// Gets ready for the positions of these maps, which are kept a reference of.
  void Start(const ResponseMaps& maps);

  /// Appends the positions that score at least `threshold`, row by row in pairs.
  ///
  /// @param scale  grid positions per pattern pixel
  /// @param pose   a number that goes into the hits
  void Run(const CoarsePoints& points, double scale, double angle, float threshold,
           std::uint32_t pose, std::vector<GridHit>& hits);

 private:
  void PlacePoints(const CoarsePoints& points, double scale, double angle);
  void CountOutsideAll();
  VoteRule RuleOf(float threshold) const;
  void ScanRows(const VoteRule& rule, std::int32_t y, std::vector<GridHit>& hits);
  void TakeHit(const CoarseHit& hit, std::int32_t first_row, std::vector<GridHit>& hits) const;
  int CountPointsWithin(std::int32_t x, std::int32_t y) const;

  const ResponseMaps* maps_ = nullptr;
  const CoarseKernels* kernels_ = nullptr;
  std::array<std::int32_t, kMaxCoarsePadded> dx_ = {};
  std::array<std::int32_t, kMaxCoarsePadded> dy_ = {};
  std::array<std::int32_t, kMaxCoarsePadded> offsets_ = {};
  PoseOffsets table_ = {};
  int num_points_ = 0;
  float threshold_ = 0.0F;
  std::uint32_t pose_ = 0;
  std::int32_t padded_width_ = 0;
  int limited_outside_ = -1;  ///< points outside the rows that the limits are for
  std::vector<CoarseHit> row_hits_;
  std::vector<std::uint8_t> limits_;
  std::vector<std::int16_t> outside_columns_;
  std::vector<std::int16_t> outside_rows_;
  std::vector<std::int16_t> reaches_;
};

}  // namespace orvandel::shape
