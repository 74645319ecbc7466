#include "edges/edge_points.h"

#include <algorithm>
#include <array>

#include "base/nonzero_bytes.h"

namespace orvandel {
namespace {

constexpr int kNoShift = 127;

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
  ForEachNonzero(peaks, width,
                 [&](std::size_t x) { columns[count++] = static_cast<std::uint16_t>(x); });
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
