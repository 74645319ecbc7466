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

/// Votes that limits are worked out in: fractions of one vote.
inline constexpr int kLimitShift = 7;

/// What a position must have got after each stage:
///
///   max(full - per_point * outside, least) >> kLimitShift
///
/// with the points outside its column and row.
struct VoteRule {
  std::int16_t full[kStages];
  std::int16_t per_point[kStages];
  std::int16_t least[kStages];
};

/// A position that has got enough votes.
struct CoarseHit {
  std::uint16_t x;
  std::uint16_t row;  ///< 0 or 1
  std::uint16_t votes;
};

struct CoarseKernels {
  /// Grid positions of points from the pattern's centre, and where each reads the maps. Points lie within
  /// 16000 positions.
  void (*place_points)(const DirectedPoints& points, const PosePlacing& placing, std::int32_t* dx,
                       std::int32_t* dy, std::int32_t* offsets);

  /// Limits of columns with so many points outside each, in rows with `outside_row` ones.
  ///
  /// @param num_columns  a whole number of blocks
  /// @param limits       kStages rows of `num_columns`
  void (*limit_columns)(const std::int16_t* outside, std::int32_t num_columns,
                        std::int16_t outside_row, const VoteRule& rule, std::uint8_t* limits);

  /// Sums up the votes of all positions of two rows and writes those that meet the limits, block by block, the upper
  /// row first. A block is left as soon as none of its positions meets a limit.
  ///
  /// @param origin       response map position (0, first row)
  /// @param limits       kStages rows of `num_columns`
  /// @param num_columns  a whole number of blocks
  /// @param hits         room for two rows
  /// @return             the number of hits
  std::size_t (*scan_rows)(const std::uint8_t* origin, std::ptrdiff_t stride,
                           const PoseOffsets& pose, const std::uint8_t* limits,
                           std::int32_t num_columns, CoarseHit* hits);
};

ORVANDEL_DECLARE_KERNELS(CoarseKernels)

}  // namespace orvandel::shape
