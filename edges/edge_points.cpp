#include "edges/edge_points.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>

#include "edges/row_kernels.h"

namespace orvandel {
namespace {

constexpr int kNoShift = 127;

/// One bit for each of 8 bytes that are 0 or 255, the first byte lowest.
std::uint64_t BitsOf(std::uint64_t word) {
  if constexpr (std::endian::native == std::endian::little) {
    // The product moves bit 8 i of the word to bit 56 + i.
    return (word & 0x0101010101010101u) * 0x0102040810204080u >> 56;
  } else {
    return (word & 0x0101010101010101u) * 0x8040201008040201u >> 56;
  }
}

std::uint64_t BitsOfBlock(const std::uint8_t* block) {
  std::array<std::uint64_t, kBlock / 8> words;
  std::memcpy(words.data(), block, sizeof(words));
  std::uint64_t any = 0;
  for (const std::uint64_t word : words)
    any |= word;
  if (any == 0) return 0;  // most blocks

  std::uint64_t bits = 0;
  for (std::size_t i = 0; i < words.size(); ++i)
    bits |= BitsOf(words[i]) << (8 * i);
  return bits;
}

/// For each sector: the step (dx, dy) from the first neighbour's side to the second's.
constexpr std::array<int, 4> kAcrossX = {1, -1, 0, 1};
constexpr std::array<int, 4> kAcrossY = {0, 1, 1, 1};

/// Vertex of the parabola through (-1, before), (0, peak), (1, after), in 1/256 pixel, toward zero. Of a
/// peak it lies within half a pixel. The quotient of whole numbers below 2^16 is never rounded to a whole
/// one that it is not.
int VertexOffset(int before, int peak, int after) {
  const auto slope = static_cast<float>((after - before) * 128);
  const auto curvature = static_cast<float>(2 * peak - before - after);
  return static_cast<int>(slope / curvature);
}

/// Half a pixel to the lower side comes out as -1 and is stored as 0.
int SubPixel(int shift) {
  return std::max(kNoShift + shift, 0);
}

int DirectionAt(std::size_t x, const RowContext& row, const GradientTables& tables) {
  const int falling = row.smooth_above[x - 1] - row.smooth_below[x + 1];
  const int rising = row.smooth_above[x + 1] - row.smooth_below[x - 1];
  // Halved twice, each time toward zero: that is a quarter toward zero.
  const int vertical = (rising + falling) / 4;
  const int horizontal = (rising - falling) / 4;
  return tables.direction[static_cast<std::size_t>((vertical + 127) * 256 + (horizontal + 127))];
}

}  // namespace

std::size_t CollectPeaks(const std::uint8_t* peaks, std::size_t width, std::uint16_t* columns) {
  std::size_t count = 0;
  for (std::size_t begin = 0; begin < width; begin += kBlock) {
    for (std::uint64_t bits = BitsOfBlock(peaks + begin); bits != 0; bits &= bits - 1) {
      columns[count++] =
          static_cast<std::uint16_t>(begin + static_cast<std::size_t>(std::countr_zero(bits)));
    }
  }
  return count;
}

void LocateEdgePoints(std::span<const std::uint16_t> columns, const RowContext& row,
                      const GradientTables& tables, EdgePoint* points) {
  const std::array<const std::uint8_t*, 4> before = {row.magnitude - 1, row.magnitude_above + 1,
                                                     row.magnitude_above, row.magnitude_above - 1};
  const std::array<const std::uint8_t*, 4> after = {row.magnitude + 1, row.magnitude_below - 1,
                                                    row.magnitude_below, row.magnitude_below + 1};
  for (const std::uint16_t x : columns) {
    const std::size_t sector = row.sector[x];
    const int offset = VertexOffset(before[sector][x], row.magnitude[x], after[sector][x]);
    *points++ = {x, DirectionAt(x, row, tables), SubPixel(kAcrossX[sector] * offset),
                 SubPixel(kAcrossY[sector] * offset)};
  }
}

}  // namespace orvandel
