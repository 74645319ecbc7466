#include "tests/plain/edge_points.h"

#include <algorithm>
#include <array>
#include <cstdlib>
#include <optional>

namespace orvandel::plain {
namespace {

constexpr int kNoShift = 127;

/// For each sector: the step (dx, dy) from the first neighbour's side to the second's.
struct AcrossEdge {
  int dx;
  int dy;
};
constexpr std::array<AcrossEdge, 4> kAcrossEdge = {{{1, 0}, {-1, 1}, {0, 1}, {1, 1}}};

/// Vertex of the parabola through (-1, before), (0, peak), (1, after), in 1/256 pixel.
std::optional<int> VertexOffset(int before, int peak, int after) {
  const int curvature = 2 * (2 * peak - before - after);
  if (curvature <= 0) return std::nullopt;
  const int offset = (after - before) * 256 / curvature;
  // Beyond half a pixel the peak belongs to the neighbouring pixel, a candidate itself.
  if (std::abs(offset) > 128) return std::nullopt;
  return offset;
}

/// Half a pixel to the lower side comes out as -1 and is stored as 0.
std::uint8_t SubPixel(int shift) {
  return static_cast<std::uint8_t>(std::max(kNoShift + shift, 0));
}

}  // namespace

std::vector<EdgePoint> LocateEdgePoints(const std::vector<EdgeCandidate>& candidates,
                                        const tImage& magnitude) {
  std::vector<EdgePoint> points;
  for (const EdgeCandidate& c : candidates) {
    const auto [dx, dy] = kAcrossEdge[c.sector];
    const int peak = magnitude.row[c.y][c.x];
    const int before = magnitude.row[c.y - dy][c.x - dx];
    const int after = magnitude.row[c.y + dy][c.x + dx];
    const auto offset = VertexOffset(before, peak, after);
    if (!offset) continue;
    points.push_back({c.x, c.y, c.direction, SubPixel(dx * *offset), SubPixel(dy * *offset)});
  }
  return points;
}

}  // namespace orvandel::plain
