#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/simd_dispatch.h"

namespace orvandel {

/// Verification points that are sifted together.
inline constexpr std::size_t kSieveBatch = 16;

/// Points of a batch, measured from the pattern's reference point; places beyond the last point hold no
/// number.
struct SieveBatch {
  double dx[kSieveBatch];
  double dy[kSieveBatch];
};

/// Where a pose lays points, and which of its places a map answers for.
struct SieveFrame {
  double tx;  ///< scene position of the reference point, pixels
  double ty;
  double cosine;  ///< times the scale
  double sine;
  double first_column;  ///< admissible positions: from the first to before the end
  double first_row;
  double end_column;
  double end_row;
  std::int32_t first_square;  ///< index of the square that holds pixel (0, 0)
  std::int32_t stride;        ///< squares in a row of the map
  std::int32_t outside;       ///< index of the empty square, for points that lie outside
};

struct SieveKernels {
  /// For each point of a batch, 1 where the map's set at the point's square shares a member with what is
  /// wanted, else 0. The positions are those of the scorer, to the bit, so the squares hold its very pixels.
  ///
  /// @return  the number of ones.
  std::uint32_t (*sift_batch)(const SieveBatch& batch, const SieveFrame& frame,
                              const std::uint32_t* sets, const std::uint32_t* wanted,
                              std::uint8_t* possible);
};

ORVANDEL_DECLARE_KERNELS(SieveKernels)

}  // namespace orvandel
