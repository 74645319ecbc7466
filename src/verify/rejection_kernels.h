#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/simd_dispatch.h"

namespace orvandel {

/// Verification points that are tested together.
inline constexpr std::size_t kPointsPerBatch = 16;

/// Points of a batch, measured from the pattern's reference point; places beyond the last point hold no
/// number.
struct PointBatch {
  double dx[kPointsPerBatch];
  double dy[kPointsPerBatch];
};

/// Where a pose lays points, and which of its places a map answers for.
struct MapFrame {
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

struct RejectionKernels {
  /// For each point of a batch, 1 where the map's mask at the point's square shares a direction with the
  /// wanted one, else 0. The positions are those of the scorer, to the bit, so the squares hold its very
  /// pixels.
  ///
  /// @return  the number of ones.
  std::uint32_t (*test_batch)(const PointBatch& batch, const MapFrame& frame,
                              const std::uint32_t* masks, const std::uint32_t* wanted,
                              std::uint8_t* possible);
};

ORVANDEL_DECLARE_KERNELS(RejectionKernels)

}  // namespace orvandel
