#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <memory>
#include <vector>

#include "verify/direction_sets.h"
#include "verify/probing.h"

namespace orvandel {

/// What one edge pixel contributes to a `ReachMap`: round the square of 2 x 2 pixels that holds it, the
/// expected directions with which a probe that starts in each square may meet it.
class ReachStamps {
 public:
  /// Squares on either side that a probe of the largest radius may come from.
  static constexpr int kMostReach = (kLargestRadius + 2) / 2;

  explicit ReachStamps(const ProbeRules& rules);

  /// Squares on either side that a probe may come from.
  int Reach() const { return reach_; }

  /// Squares in a row of a stamp, 8 or 16: `2 * Reach() + 1` and some empty ones.
  std::size_t RowSize() const { return row_size_; }

  /// The stamp of an edge pixel: `2 * Reach() + 1` rows.
  ///
  /// @param phase_x,phase_y  0 or 1: where in its square the pixel lies.
  const DirectionSet* Of(int stored_bin, int phase_x, int phase_y) const {
    return sets_.data() + IndexOf(stored_bin, phase_x, phase_y);
  }

 private:
  std::size_t IndexOf(int stored_bin, int phase_x, int phase_y) const {
    return static_cast<std::size_t>((stored_bin * 2 + phase_y) * 2 + phase_x) * stamp_size_;
  }
  void AddStart(int step_row, int step_column, int expected_bin, int stored_bin);

  int reach_;
  std::size_t row_size_;
  std::size_t stamp_size_;
  std::vector<DirectionSet> sets_;
};

/// Stamps for rules; those of the usual rules are made once a process.
std::shared_ptr<const ReachStamps> StampsFor(const ProbeRules& rules);

}  // namespace orvandel
