#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/simd_dispatch.h"

namespace orvandel::shape {

/// Directions that votes are told apart by, a whole turn.
inline constexpr int kDirectionBins = 16;

/// Squared lengths of the gradients of three rows.
struct SquareRows {
  const std::int32_t* above;
  const std::int32_t* centre;
  const std::int32_t* below;
};

/// Loops of the response maps; integers alone, so every level gives the same bits.
struct ResponseKernels {
  /// Squared lengths of packed gradients.
  void (*square_row)(const std::int32_t* packed, std::int32_t width, std::int32_t* squares);

  /// Marks the pixels whose square exceeds `least_square`, is not less than that of the neighbour to the left or above along
  /// the gradient, and exceeds that of the other one; 1, else 0. The first and last column are never marked.
  /// At least 3 columns.
  void (*mark_peaks)(const SquareRows& squares, const std::int32_t* packed, std::int32_t width,
                     std::int32_t least_square, std::uint8_t* marks);

  /// Sorts votes by direction: `plane[bin * plane_size + x]` becomes `cells[kDirectionBins * x + bin]`.
  void (*part_votes)(const std::uint8_t* cells, std::int32_t width, std::uint8_t* plane,
                     std::ptrdiff_t plane_size);
};

ORVANDEL_DECLARE_KERNELS(ResponseKernels)

}  // namespace orvandel::shape
