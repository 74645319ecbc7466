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
  /// before, and the last pair of rows likewise, as far as the range is that large. A block is left as soon as none of
  /// its positions meets a limit. Those that meet all are written, the upper row first, none twice.
  ///
  /// @param limits    votes that a position must have after each stage, kStages
  /// @param hits      room for at least kBlockRows * width
  /// @param next_row  receives the row to go on with where the room was too small for all, else `end_row`
  /// @return          the number of hits
  std::size_t (*scan)(const PositionRange& range, const PoseOffsets& pose,
                      const std::uint8_t* limits, CoarseHit* hits, std::size_t room,
                      std::int32_t* next_row);
};

ORVANDEL_DECLARE_KERNELS(CoarseKernels)

}  // namespace orvandel::shape
