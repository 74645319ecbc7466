#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "verify/match_options.h"
#include "verify/orientation_mask.h"

namespace orvandel {

/// What one edge pixel contributes to a `SpreadOrientationMap`: round the square of 2 x 2 pixels that holds
/// it, the expected directions with which a probe that starts in each square may meet it. Those are the
/// directions that match the edge's, as far as a probe of that direction comes that way.
class ProbeFootprints {
 public:
  /// Squares on either side that a probe of the largest radius may come from.
  static constexpr int kMostReach = (kLargestRadius + 2) / 2;

  explicit ProbeFootprints(const MatchOptions& options);

  /// Squares on either side that a probe may come from.
  int Reach() const { return reach_; }

  /// Squares in a row of a footprint, 8 or 16: `2 * Reach() + 1` and some empty ones.
  std::size_t RowSize() const { return row_size_; }

  /// The footprint of an edge pixel of any direction: `2 * Reach() + 1` rows.
  ///
  /// @param phase_x,phase_y  0 or 1: where in its square the pixel lies.
  const OrientationMask* Of(int phase_x, int phase_y) const {
    return starts_.data() + IndexOf(phase_x, phase_y);
  }

  /// The expected directions that may match a stored one.
  OrientationMask MatchedBy(int stored_bin) const {
    return matched_[static_cast<std::size_t>(stored_bin)];
  }

 private:
  std::size_t IndexOf(int phase_x, int phase_y) const {
    return static_cast<std::size_t>(phase_y * 2 + phase_x) * footprint_size_;
  }
  void AddStart(int step_row, int step_column, OrientationMask expected);

  int reach_;
  std::size_t row_size_;
  std::size_t footprint_size_;
  std::vector<OrientationMask> starts_;
  std::array<OrientationMask, kNumStoredBins> matched_{};
};

/// Footprints for options; those of the default options are made once a process.
std::shared_ptr<const ProbeFootprints> FootprintsFor(const MatchOptions& options);

}  // namespace orvandel
