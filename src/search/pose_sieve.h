#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

#include "orvandel/classic/edge_record.h"
#include "orvandel/classic/patt_verify.h"
#include "search/pose.h"
#include "search/sieve_kernels.h"
#include "verify/direction_sets.h"
#include "verify/probing.h"
#include "verify/reach_map.h"

namespace orvandel {

/// Tells, with one look a point, which verification points cannot have credit under a pose: those that
/// fall outside the scene, and those without an edge of about their direction within reach.
class PoseSieve {
 public:
  /// @param verifier   only read here.
  /// @param edges      outlives the sieve and keeps its content; may be null.
  /// @param reference  the pattern's reference point, pattern pixels.
  /// @throws std::bad_alloc
  PoseSieve(const CPattVerify& verifier, const CEdgeImgComplement* edges, Point reference);

  /// Puts the rotation of the next poses in force.
  void TurnTo(double angle);

  /// Looks at the points of a pose, in their order of sifting, until more than `max_impossible` of them
  /// cannot have credit.
  ///
  /// @return  false when there are more; else `MayHaveCredit` tells of every point.
  bool Sift(const PointMapper& mapper, std::int64_t max_impossible);

  /// The points in the order in which they are sifted: far-apart ones follow each other.
  std::span<const std::uint32_t> Order() const { return order_; }

  /// Of the point at a place in that order.
  bool MayHaveCredit(std::size_t place) const { return possible_[place] != 0; }
  std::size_t NumPossible() const { return num_possible_; }

  std::int64_t NumLooks() const { return num_looks_; }

 private:
  using Codes = std::array<TurnCode, kSieveBatch>;
  using WantedSets = std::array<DirectionSet, kSieveBatch>;

  void MakeMap();
  void FillBatches(const CPattVerify& verifier, Point reference);
  bool IsMapReady();
  SieveFrame FrameOf(const PointMapper& mapper) const;
  std::size_t SiftBatch(std::size_t batch, const SieveFrame& frame);
  const WantedSets& WantedBy(std::size_t batch);

  std::size_t num_points_;
  ProbeRules rules_;
  const CEdgeImgComplement* edges_;
  std::optional<ReachMap> reach_;
  const SieveKernels& kernels_;
  bool is_map_filled_ = false;

  std::vector<std::uint32_t> order_;
  std::vector<SieveBatch> batches_;
  std::vector<Codes> codes_;  ///< of the points' directions, by batch
  bool all_have_codes_ = true;

  TurnCode turn_ = 0;
  bool turn_has_code_ = false;
  std::vector<WantedSets> wanted_;  ///< by batch, under the rotation in force
  std::size_t num_wanted_ = 0;      ///< leading batches for which it is up to date

  std::vector<std::uint8_t> possible_;  ///< by place, to a whole batch
  std::size_t num_possible_ = 0;
  std::int64_t num_looks_ = 0;
};

}  // namespace orvandel
