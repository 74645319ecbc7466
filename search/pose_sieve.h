#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "contours/edge_record.h"
#include "search/pose.h"
#include "verify/direction_sets.h"
#include "verify/patt_verify.h"
#include "verify/probing.h"
#include "verify/reach_map.h"

namespace orvandel {

/// Tells, with one look a point, which verification points cannot have credit under a pose: those that
/// fall outside the scene, and those without an edge of about their direction within reach.
class PoseSieve {
 public:
  /// @param verifier   outlives the sieve.
  /// @param edges      only read here; may be null.
  /// @param reference  the pattern's reference point, pattern pixels.
  /// @throws std::bad_alloc
  PoseSieve(const CPattVerify& verifier, const CEdgeImgComplement* edges, Point reference);

  /// Puts the rotation of the next poses in force.
  void TurnTo(double angle);

  /// Looks at the points of a pose until more than `max_impossible` of them cannot have credit.
  ///
  /// @return  false when there are more; else `MayHaveCredit` tells of every point.
  bool Sift(const PointMapper& mapper, std::int64_t max_impossible);

  /// The points in the order in which they are sifted.
  std::span<const std::uint32_t> Order() const { return order_; }

  bool MayHaveCredit(std::size_t point) const { return possible_[point] != 0; }
  std::size_t NumPossible() const { return num_possible_; }

  std::int64_t NumLooks() const { return num_looks_; }

 private:
  static constexpr std::size_t kBatchSize = 16;

  /// Points that are sifted together; places beyond the last point hold no number.
  struct Batch {
    std::array<double, kBatchSize> dx;
    std::array<double, kBatchSize> dy;
    std::array<TurnCode, kBatchSize> code;
    std::array<std::uint32_t, kBatchSize>
        point;  ///< index; the number of points where there is none
  };
  using WantedSets = std::array<DirectionSet, kBatchSize>;
  using SquareIndices = std::array<std::int32_t, kBatchSize>;

  void FillBatches(const CPattVerify& verifier, Point reference);
  const WantedSets& WantedBy(std::size_t batch);
  void FindSquares(const Batch& batch, const PointMapper& mapper, SquareIndices& squares) const;
  std::size_t SiftBatch(std::size_t batch, const PointMapper& mapper);

  std::size_t num_points_;
  bool all_have_codes_ = true;
  std::optional<ReachMap> reach_;
  double first_column_ = 0.0;  ///< admissible positions: from the first to before the end
  double first_row_ = 0.0;
  double end_column_ = 0.0;
  double end_row_ = 0.0;

  std::vector<std::uint32_t> order_;
  std::vector<Batch> batches_;
  std::vector<WantedSets> wanted_;  ///< by batch, under the rotation in force
  std::size_t num_wanted_ = 0;      ///< leading batches for which it is up to date
  bool can_sift_ = false;
  TurnCode turn_ = 0;

  std::vector<std::uint8_t> possible_;  ///< by point, and one for the places without
  std::size_t num_possible_ = 0;
  std::int64_t num_looks_ = 0;
};

}  // namespace orvandel
