#pragma once

#include <cstddef>
#include <memory>

#include "contours/point_arrays.h"
#include "orvandel/classic/edge_record.h"
#include "verify/direction_sets.h"
#include "verify/reach_stamps.h"

namespace orvandel {

/// For every square of 2 x 2 pixels of a scene: the expected directions for which a search probe that
/// starts in it may meet a matching edge. A pattern point whose direction is not among them has no credit,
/// and one look tells.
class ReachMap {
 public:
  /// An empty map: no probe meets anything.
  ///
  /// @param width,height  of the scene, pixels.
  /// @throws std::bad_alloc
  ReachMap(int width, int height, const ProbeRules& rules);

  /// Enters the edges of a record of the map's size, once. Allocates nothing.
  ///
  /// @param edges  its presence and directions as they stand now.
  void Fill(const CEdgeImgComplement& edges);

  /// Index of the square that holds a pixel of the scene.
  std::size_t IndexOf(int column, int row) const {
    return static_cast<std::size_t>(row / 2 + kBorder) * stride_ +
           static_cast<std::size_t>(column / 2 + kBorder);
  }

  const DirectionSet* Sets() const { return sets_.get(); }
  std::size_t Stride() const { return stride_; }

  /// Index of an empty entry, for points that lie outside.
  std::size_t EmptyIndex() const { return num_squares_; }

  /// Squares round the scene, so that stamps need no look at its border.
  static constexpr int kBorder = 16;

 private:
  template <std::size_t kRowSize>
  void StampAll(const CEdgeImgComplement& edges);

  std::shared_ptr<const ReachStamps> stamps_;
  std::size_t stride_;
  std::size_t num_squares_;
  HeapArray<DirectionSet> sets_;
};

}  // namespace orvandel
