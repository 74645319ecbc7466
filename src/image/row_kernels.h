#pragma once

#include <cstdint>

#include "platform/simd_dispatch.h"

namespace orvandel {

/// Loops over the columns of a row; integers alone, so every level gives the same bits.
struct ImageRowKernels {
  /// Pixels times kUnitsPerGrey.
  void (*widen_row)(const std::uint8_t* from, std::int32_t width, std::uint16_t* to);

  /// Means of 2 x 2 pixels, rounded; `width` of the result.
  void (*halve_rows)(const std::uint16_t* upper, const std::uint16_t* lower, std::int32_t width,
                     std::uint16_t* to);

  /// Packed Sobel gradients of `count` columns; of each row the column before and the one behind are read, too.
  void (*gradient_row)(const std::uint16_t* above, const std::uint16_t* centre,
                       const std::uint16_t* below, std::int32_t count, std::int32_t* packed);

  /// Sizes of the second differences across 3 x 3 pixels, for columns 1 .. width - 2; the result begins with
  /// that of column 1.
  void (*difference_row)(const std::uint16_t* above, const std::uint16_t* centre,
                         const std::uint16_t* below, std::int32_t width, std::uint16_t* sizes);
};

ORVANDEL_DECLARE_KERNELS(ImageRowKernels)

}  // namespace orvandel
