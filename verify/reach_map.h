#pragma once

#include <cstddef>
#include <vector>

#include "contours/edge_record.h"
#include "verify/direction_sets.h"
#include "verify/reach_stamps.h"

namespace orvandel {

/// For every square of 2 x 2 pixels of a scene: the expected directions for which a search probe that
/// starts in it may meet a matching edge. A pattern point whose direction is not among them has no credit,
/// and one look tells.
class ReachMap {
 public:
  /// @param edges  its presence and directions as they stand now; must not be without arrays.
  /// @throws std::bad_alloc
  ReachMap(const CEdgeImgComplement& edges, const ProbeRules& rules);

  /// Index of the square that holds a pixel of the scene.
  std::size_t IndexOf(int column, int row) const {
    return static_cast<std::size_t>(row / 2 + kBorder) * stride_ +
           static_cast<std::size_t>(column / 2 + kBorder);
  }

  const DirectionSet* Sets() const { return sets_.data(); }
  std::size_t Stride() const { return stride_; }

  /// Index of an empty entry, for points that lie outside.
  std::size_t EmptyIndex() const { return sets_.size() - 1; }

  /// Squares round the scene, so that stamps need no look at its border.
  static constexpr int kBorder = 16;

 private:
  template <std::size_t kRowSize>
  void StampAll(const CEdgeImgComplement& edges, const ReachStamps& stamps);

  std::size_t stride_;
  std::vector<DirectionSet> sets_;
};

}  // namespace orvandel
