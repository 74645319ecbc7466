#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/simd_dispatch.h"

namespace orvandel::shape {

/// Positions that are looked at together: this many columns of two rows.
inline constexpr std::int32_t kBlockColumns = 32;
inline constexpr std::int32_t kBlockRows = 2;

/// Points are summed up in groups of this many.
inline constexpr std::size_t kPointGroup = 8;

/// Coarse points of a pattern; arrays of a whole number of groups.
struct DirectedPoints {
  const float* x;
  const float* y;
  const float* direction;  ///< of the normal, in bins, 0 or more
  std::size_t padded;
};

/// A pose, and the response maps that its points are to be looked up in.
struct PosePlacing {
  float cosine;  ///< times grid positions per pattern pixel
  float sine;
  float turn;  ///< rotation in bins, 0 or more
  std::int32_t stride;
  std::int32_t plane_size;
};

/// Points are summed up in stages, after each of which most blocks can be left.
inline constexpr std::size_t kStages = 4;

/// A pattern at one pose: where each of its points reads the response maps, relative to the position.
struct PoseOffsets {
  const std::int32_t* offsets;
  std::size_t
      ends[kStages];  ///< of the stages, multiples of kPointGroup; the last is the number of points
};

/// The positions of a response map, and which rows of it are looked at.
struct PositionRange {
  const std::uint8_t* origin;  ///< map position (0, 0) of the first direction
  std::ptrdiff_t stride;
  std::int32_t width;
  std::int32_t first_row;
  std::int32_t end_row;
};

/// Bytes of the sums of a block.
inline constexpr std::size_t kBlockSums = std::size_t{kBlockRows} * kBlockColumns;

/// Where a block begins.
struct BlockPlace {
  std::int32_t offset;  ///< in the map
  std::int32_t x;
  std::int32_t y;
};

/// Room for the blocks of a range while they are summed up.
struct ScanScratch {
  std::uint8_t* sums;  ///< kBlockSums each
  BlockPlace* places;
};

/// A position that has got enough votes.
struct CoarseHit {
  std::uint16_t x;
  std::uint16_t y;
  std::uint16_t votes;
};

struct CoarseKernels {
  /// Grid positions of points from the pattern's centre, and where each reads the maps. Points lie within
  /// 16000 positions.
  void (*place_points)(const DirectedPoints& points, const PosePlacing& placing, std::int32_t* dx,
                       std::int32_t* dy, std::int32_t* offsets);

  /// Sums up the votes of positions in pairs of rows, block by block from the left; the last block of a pair overlaps the one
  /// before, and the last pair of rows likewise, as far as the maps are that large. A block is left when after a stage
  /// none of its positions meets the limit. Those that meet all are written, block by block, the upper row first, none twice.
  ///
  /// @param limits   votes that a position must have after each stage, kStages
  /// @param scratch  for as many blocks as the range has
  /// @param hits     room for all positions of the range
  /// @return         the number of hits
  std::size_t (*scan)(const PositionRange& range, const PoseOffsets& pose,
                      const std::uint8_t* limits, const ScanScratch& scratch, CoarseHit* hits);
};

ORVANDEL_DECLARE_KERNELS(CoarseKernels)

}  // namespace orvandel::shape
