#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/simd_dispatch.h"

namespace orvandel {

/// The rows that the kernels read and write are padded: this many further columns stand before the
/// first and at least as many after the last, so that whole blocks and neighbours can be touched
/// without a look at the border. What stands in the padding is of no account.
inline constexpr std::size_t kRowPadding = 64;

/// Columns that the kernels work on at once; padded rows are computed in whole blocks.
inline constexpr std::size_t kBlock = 64;

/// What a gradient must reach to be kept.
struct GradientLimits {
  std::uint8_t threshold;  ///< least magnitude, 0..252
  std::uint16_t
      least_step;  ///< least diagonal grey difference that magnitude takes, for a quick look
};

/// The loops over the columns of a row, compiled for one level of vector instructions. Integers, and
/// square roots that IEEE 754 fixes to the bit, so all levels give the same bits.
struct RowKernels {
  /// Sums of three neighbours of an image row of `width` >= 2 bytes; a border pixel stands in for the
  /// one beyond it.
  void (*sum_row)(const std::uint8_t* row, std::size_t width, std::uint16_t* sums);

  /// Means of nine pixels, rounded down, from the sums of three rows.
  void (*smooth_row)(const std::uint16_t* above, const std::uint16_t* centre,
                     const std::uint16_t* below, std::size_t width, std::uint8_t* smooth);

  /// Magnitudes of the gradient between the smoothed rows above and below, 0 where they stay below the
  /// threshold and in the two outermost columns; and, where there is one, the sector: 0 across x,
  /// 2 across y, 1 and 3 across the diagonals.
  void (*gradient_row)(const std::uint8_t* above, const std::uint8_t* below, std::size_t width,
                       GradientLimits limits, std::uint8_t* magnitude, std::uint8_t* sector);

  /// 255 where the magnitude has its peak across the edge, else 0.
  void (*peak_row)(const std::uint8_t* above, const std::uint8_t* centre, const std::uint8_t* below,
                   const std::uint8_t* sector, std::size_t width, std::uint8_t* peaks);
};

ORVANDEL_DECLARE_KERNELS(RowKernels)

}  // namespace orvandel
