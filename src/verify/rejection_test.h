#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "base/geometry.h"
#include "orvandel/classic/edge_record.h"
#include "verify/match_options.h"
#include "verify/orientation_mask.h"
#include "verify/point_mapper.h"
#include "verify/rejection_kernels.h"
#include "verify/spread_orientation_map.h"
#include "verify/verification_points.h"

namespace orvandel {

/// Tells, with one look a point, which verification points cannot have credit under a pose: those that
/// fall outside the scene, and those without an edge of about their direction within reach.
class RejectionTest {
 public:
  /// @param points     only read here.
  /// @param edges      outlives the test and keeps its content; may be null.
  /// @param reference  the pattern's reference point, pattern pixels.
  /// @throws std::bad_alloc
  RejectionTest(const VerificationPointsView& points, Point reference,
                const CEdgeImgComplement* edges, const MatchOptions& options);

  /// Puts the rotation of the next poses in force.
  void SetRotation(double angle);

  /// Looks at the points of a pose, in the order of `Order`, until more than `max_impossible` of them
  /// cannot have credit.
  ///
  /// @return  false when there are more; else `MayHaveCredit` tells of every point.
  bool Passes(const PointMapper& mapper, std::int64_t max_impossible);

  /// The points in the order in which they are looked at: far-apart ones follow each other.
  std::span<const std::uint32_t> Order() const { return order_; }

  /// Of the point at a place in that order.
  bool MayHaveCredit(std::size_t place) const { return possible_[place] != 0; }
  std::size_t NumPossible() const { return num_possible_; }

  std::int64_t NumLooks() const { return num_looks_; }

 private:
  using Angles = std::array<QuantisedAngle, kPointsPerBatch>;
  using WantedMasks = std::array<OrientationMask, kPointsPerBatch>;

  void MakeMap();
  void FillBatches(const VerificationPointsView& points, Point reference);
  bool IsMapReady();
  MapFrame FrameOf(const PointMapper& mapper) const;
  std::size_t TestBatch(std::size_t batch, const MapFrame& frame);
  const WantedMasks& WantedBy(std::size_t batch);

  std::size_t num_points_;
  MatchOptions options_;
  const CEdgeImgComplement* edges_;
  std::optional<SpreadOrientationMap> map_;
  const RejectionKernels& kernels_;
  bool is_map_filled_ = false;

  std::vector<std::uint32_t> order_;
  std::vector<PointBatch> batches_;
  std::vector<Angles> directions_;  ///< of the points, by batch
  bool all_directions_quantised_ = true;

  QuantisedAngle rotation_ = 0;
  bool is_rotation_quantised_ = false;
  std::vector<WantedMasks> wanted_;  ///< by batch, under the rotation in force
  std::size_t num_wanted_ = 0;       ///< leading batches for which it is up to date

  std::vector<std::uint8_t> possible_;  ///< by place, to a whole batch
  std::size_t num_possible_ = 0;
  std::int64_t num_looks_ = 0;
};

}  // namespace orvandel
