// Kernels of the response maps, as loops that compilers turn into vector code; compiled once a level
// (platform/simd_dispatch.h).

#if defined(__SSE2__)
#include <immintrin.h>
#endif

#include "shape/search/response_kernels.h"

namespace orvandel::shape {
namespace {

inline std::int32_t UnpackX(std::int32_t packed) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(packed) << 16) >> 16;
}
inline std::int32_t UnpackY(std::int32_t packed) {
  return packed >> 16;
}
inline std::int32_t SizeOf(std::int32_t value) {
  return value < 0 ? -value : value;
}

void SquareRow(const std::int32_t* packed, std::int32_t width, std::int32_t* squares) {
  for (std::int32_t x = 0; x < width; ++x) {
    const std::int32_t gx = UnpackX(packed[x]);
    const std::int32_t gy = UnpackY(packed[x]);
    squares[x] = gx * gx + gy * gy;
  }
}

constexpr std::int32_t kMarkBlock = 32;

inline bool IsAnyAbove(const std::int32_t* squares, std::int32_t least_square) {
  std::int32_t any = 0;
  for (std::int32_t i = 0; i < kMarkBlock; ++i)
    any |= squares[i] > least_square ? 1 : 0;
  return any != 0;
}

/// Marks a block of columns that begins at these pointers.
inline void MarkBlock(const SquareRows& rows, const std::int32_t* packed, std::int32_t least_square,
                      std::uint8_t* marks) {
  const std::int32_t* const above = rows.above;
  const std::int32_t* const centre = rows.centre;
  const std::int32_t* const below = rows.below;
  const std::int32_t* const above_left = above - 1;
  const std::int32_t* const centre_left = centre - 1;
  const std::int32_t* const below_left = below - 1;
  std::int32_t is_peak[kMarkBlock];
  for (std::int32_t i = 0; i < kMarkBlock; ++i) {
    const std::int32_t gx = UnpackX(packed[i]);
    const std::int32_t gy = UnpackY(packed[i]);
    const std::int32_t across = SizeOf(gx);
    const std::int32_t down = SizeOf(gy);
    // The tangent of 22.5 degrees is 0.4142; 53 / 128 is 0.4141.
    const bool is_level = 128 * down <= 53 * across;
    const bool is_steep = 128 * across <= 53 * down;
    const bool falls = (gx ^ gy) >= 0;  // the image's y axis runs down
    const std::int32_t slanted_before = falls ? above_left[i] : below_left[i];
    const std::int32_t slanted_after = falls ? below[i + 1] : above[i + 1];
    const std::int32_t steep_before = is_steep ? above[i] : slanted_before;
    const std::int32_t steep_after = is_steep ? below[i] : slanted_after;
    const std::int32_t before = is_level ? centre_left[i] : steep_before;
    const std::int32_t after = is_level ? centre[i + 1] : steep_after;
    const std::int32_t square = centre[i];
    is_peak[i] = ((square > least_square) & (square >= before) & (square > after)) ? 1 : 0;
  }
  for (std::int32_t i = 0; i < kMarkBlock; ++i)
    marks[i] = static_cast<std::uint8_t>(is_peak[i]);
}

/// The same of a few columns.
inline void MarkColumns(const SquareRows& rows, const std::int32_t* packed, std::int32_t count,
                        std::int32_t least_square, std::uint8_t* marks) {
  // Copied into whole blocks with a column to either side.
  std::int32_t squares[3][kMarkBlock + 2] = {};
  std::int32_t gradients[kMarkBlock] = {};
  std::uint8_t block[kMarkBlock];
  for (std::int32_t i = 0; i < count + 2; ++i) {
    squares[0][i] = *(rows.above + i - 1);
    squares[1][i] = *(rows.centre + i - 1);
    squares[2][i] = *(rows.below + i - 1);
  }
  for (std::int32_t i = 0; i < count; ++i)
    gradients[i] = packed[i];
  MarkBlock({squares[0] + 1, squares[1] + 1, squares[2] + 1}, gradients, least_square, block);
  for (std::int32_t i = 0; i < count; ++i)
    marks[i] = block[i];
}

void MarkPeaks(const SquareRows& squares, const std::int32_t* packed, std::int32_t width,
               std::int32_t least_square, std::uint8_t* marks) {
  const std::int32_t end = width - 1;
  marks[0] = marks[end] = 0;
  std::int32_t x = 1;
  for (; x + kMarkBlock <= end; x += kMarkBlock) {
    if (IsAnyAbove(squares.centre + x, least_square)) {
      MarkBlock({squares.above + x, squares.centre + x, squares.below + x}, packed + x,
                least_square, marks + x);
    } else {
      for (std::int32_t i = 0; i < kMarkBlock; ++i)
        marks[x + i] = 0;
    }
  }
  if (x < end)
    MarkColumns({squares.above + x, squares.centre + x, squares.below + x}, packed + x, end - x,
                least_square, marks + x);
}

#if defined(__SSE2__)

/// Cells that are parted at once: as many as there are directions, so that a square of bytes is transposed.
constexpr std::int32_t kVoteBlock = kDirectionBins;

inline void PartBlock(const std::uint8_t* cells, std::uint8_t* plane, std::ptrdiff_t plane_size) {
  __m128i rows[kVoteBlock];
  __m128i next[kVoteBlock];
  for (std::int32_t i = 0; i < kVoteBlock; ++i)
    rows[i] = _mm_loadu_si128(reinterpret_cast<const __m128i*>(cells) + i);
  // Each round of interleaving moves one bit of the row's number into the column's; four of them exchange both.
  for (std::int32_t round = 0; round < 4; ++round) {
    for (std::int32_t i = 0; i < kVoteBlock / 2; ++i) {
      next[2 * i] = _mm_unpacklo_epi8(rows[i], rows[i + kVoteBlock / 2]);
      next[2 * i + 1] = _mm_unpackhi_epi8(rows[i], rows[i + kVoteBlock / 2]);
    }
    for (std::int32_t i = 0; i < kVoteBlock; ++i)
      rows[i] = next[i];
  }
  for (std::int32_t bin = 0; bin < kDirectionBins; ++bin)
    _mm_storeu_si128(reinterpret_cast<__m128i*>(plane + bin * plane_size), rows[bin]);
}

#else

constexpr std::int32_t kVoteBlock = 1;

inline void PartBlock(const std::uint8_t* cells, std::uint8_t* plane, std::ptrdiff_t plane_size) {
  for (std::int32_t bin = 0; bin < kDirectionBins; ++bin)
    plane[bin * plane_size] = cells[bin];
}

#endif

void PartVotes(const std::uint8_t* cells, std::int32_t width, std::uint8_t* plane,
               std::ptrdiff_t plane_size) {
  std::int32_t x = 0;
  for (; x + kVoteBlock <= width; x += kVoteBlock)
    PartBlock(cells + kDirectionBins * x, plane + x, plane_size);
  for (; x < width; ++x) {
    for (std::int32_t bin = 0; bin < kDirectionBins; ++bin)
      plane[bin * plane_size + x] = cells[kDirectionBins * x + bin];
  }
}

}  // namespace

namespace ORVANDEL_SIMD_NAMESPACE {
const ResponseKernels kResponseKernels = {SquareRow, MarkPeaks, PartVotes};
}

}  // namespace orvandel::shape
