#pragma once

#include <cstddef>
#include <vector>

#include "contours/edge_record.h"
#include "verify/direction_sets.h"

namespace orvandel {

/// For every square of 2 x 2 pixels of a scene: the directions of all edges within reach of any probe
/// that starts from it. Where that set misses what a pattern point expects, the point has no credit, and
/// one look tells.
class ReachMap {
 public:
  /// @param edges   its presence and directions as they stand now.
  /// @param radius  the probes' search radius, pixels.
  /// @throws std::bad_alloc
  ReachMap(const CEdgeImgComplement& edges, int radius);

  /// Squares in a row.
  int Stride() const { return columns_; }

  /// Row by row; one further entry after the last, which is empty.
  const DirectionSet* Sets() const { return sets_.data(); }

  /// Index of the empty entry, for points that lie outside.
  std::size_t EmptyIndex() const { return sets_.size() - 1; }

 private:
  void FillRow(const CEdgeImgComplement& edges, int row, DirectionSet* sets) const;

  int columns_;
  int rows_;
  std::vector<DirectionSet> sets_;
};

}  // namespace orvandel
