#pragma once

#include <cstddef>
#include <cstdint>

#include "platform/simd_dispatch.h"
#include "shape/edges/edge_points.h"

namespace orvandel::shape::edges {

/// Rows that the kernels read and write have this many spare columns before the first pixel, and as
/// many behind the block of so many columns that the last pixel lies in; what stands there is of no
/// account.
inline constexpr std::size_t kEdgeBlock = 64;

/// Rows and columns along the border that hold no points: smoothing, difference and neighbour reach
/// so many pixels, and no point shall depend on what is made up beyond the image.
inline constexpr std::size_t kEdgeBorder = 3;

/// Smoothed values are 16 pixels' weight times this, which lets the upper halves of 16-bit products
/// tell strong gradients from weak ones. A central difference is then the grey levels per pixel
/// times `kGradientScale`.
inline constexpr int kSmoothScale = 8;
inline constexpr float kGradientScale = 2 * 16 * kSmoothScale;

/// Pixels whose gradient is a local maximum, an array a property, each as long as the row and a
/// block. Differences are scaled by `kGradientScale`.
template <typename Value>
struct EdgeCandidatesOf {
  std::int32_t* column;
  Value* gradient_x;
  Value* gradient_y;
  Value* before;  ///< size of the gradient's larger component a pixel back along its axis
  Value* after;   ///< and one pixel further
};

/// One step of the sweep over an image: a row of pixels comes in, the candidates of the row three
/// above it go out. Sums are those of [1 2 1] along the row, smoothed values those of [1 2 1]
/// across sums. The order of the columns within sums and smoothed values is the level's own.
template <typename Pixel, typename Value, typename Square>
struct EdgeRowOf {
  const Pixel* pixels;  ///< the row that comes in; spare columns around it as around all rows
  std::size_t width;    ///< 7 and more
  Value* sums[3];       ///< newest first; sums[0] is written
  /// Newest first; smooth[0], one row above the pixels, is written; smooth[2] is the row wanted.
  Value* smooth[5];
  Square least_square;              ///< of the gradient's scaled length
  EdgeCandidatesOf<Value> found;    ///< receives the candidates of the row, from left to right
  EdgeCandidatesOf<Value> scratch;  ///< for the loop's own use
  std::int32_t* blocks;             ///< likewise
};
using EdgeRow8 = EdgeRowOf<std::uint8_t, std::int16_t, std::int32_t>;
using EdgeRow16 = EdgeRowOf<std::uint16_t, std::int32_t, float>;

/// The loops for one kind of image.
template <typename Pixel, typename Value, typename Square>
struct EdgeLoopsOf {
  /// Takes a row in; returns the number of candidates that go out.
  std::size_t (*collect)(const EdgeRowOf<Pixel, Value, Square>& row);

  /// Makes candidates edge points. `rows` has the row of each.
  void (*locate)(const EdgeCandidatesOf<Value>& candidates, const std::int32_t* rows,
                 std::size_t count, EdgePoint* points);
};
using EdgeLoops8 = EdgeLoopsOf<std::uint8_t, std::int16_t, std::int32_t>;
using EdgeLoops16 = EdgeLoopsOf<std::uint16_t, std::int32_t, float>;

/// The loops of the edge stage, compiled for one level of vector instructions. Integers, and
/// floating-point operations that IEEE 754 fixes to the bit, so all levels give the same bits.
struct EdgeRowKernels {
  EdgeLoops8 of_8_bits;
  EdgeLoops16 of_16_bits;
};

ORVANDEL_DECLARE_KERNELS(EdgeRowKernels)

}  // namespace orvandel::shape::edges
