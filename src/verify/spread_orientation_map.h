#pragma once

#include <cstddef>
#include <memory>

#include "base/heap_array.h"
#include "orvandel/classic/edge_record.h"
#include "verify/orientation_mask.h"
#include "verify/probe_footprints.h"

namespace orvandel {

/// For every square of 2 x 2 pixels of a scene: the expected directions for which a search probe that
/// starts in it may meet a matching edge, that is, the orientations of the scene's edges, each spread over
/// the squares from which it is within reach. A pattern point whose direction is not among them has no
/// credit, and one look tells.
class SpreadOrientationMap {
 public:
  /// An empty map: no probe meets anything.
  ///
  /// @param width,height  of the scene, pixels.
  /// @throws std::bad_alloc
  SpreadOrientationMap(int width, int height, const MatchOptions& options);

  /// Enters the edges of a record of the map's size, once. Allocates nothing.
  ///
  /// @param edges  its presence and directions as they stand now.
  void Fill(const CEdgeImgComplement& edges);

  /// Index of the square that holds a pixel of the scene.
  std::size_t IndexOf(int column, int row) const {
    return static_cast<std::size_t>(row / 2 + kBorder) * stride_ +
           static_cast<std::size_t>(column / 2 + kBorder);
  }

  const OrientationMask* Masks() const { return masks_.get(); }
  std::size_t Stride() const { return stride_; }

  /// Index of an empty entry, for points that lie outside.
  std::size_t EmptyIndex() const { return num_squares_; }

  /// Squares round the scene, so that footprints need no look at its border.
  static constexpr int kBorder = 16;

 private:
  template <std::size_t kRowSize>
  void SpreadAll(const CEdgeImgComplement& edges);

  std::shared_ptr<const ProbeFootprints> footprints_;
  std::size_t stride_;
  std::size_t num_squares_;
  HeapArray<OrientationMask> masks_;
};

}  // namespace orvandel
