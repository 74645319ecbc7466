#pragma once

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <optional>
#include <vector>

#include "orvandel/classic/edge_record.h"
#include "tests/support/contour_sets.h"
#include "tests/support/grids.h"

// Following edge pixels once more, written to be read: one chain at a time, its two passes in lists
// of their own. The library has to give the same contours.
namespace orvandel::test {

struct Pixel {
  int column = 0;
  int row = 0;

  friend bool operator==(const Pixel&, const Pixel&) = default;
};

/// Neighbour directions 0..7, clockwise from the right (rows grow downwards).
inline constexpr Pixel kSteps[8] = {{1, 0},  {1, 1},   {0, 1},  {-1, 1},
                                    {-1, 0}, {-1, -1}, {0, -1}, {1, -1}};

inline bool IsEdge(const Grid& map, Pixel p) {
  const bool inside = p.column >= 0 && p.column < Width(map) && p.row >= 0 && p.row < Height(map);
  return inside && At(map, p.column, p.row) != 0;
}

inline Pixel Neighbour(Pixel p, int direction) {
  return {p.column + kSteps[direction].column, p.row + kSteps[direction].row};
}

/// The first direction that leads to an edge pixel, from a left turn clockwise round to straight
/// back. The one that is left over, `previous` + 5, is never looked at.
inline std::optional<int> NextDirection(const Grid& map, Pixel at, int previous) {
  for (const int turn : {6, 7, 0, 1, 2, 3, 4}) {
    const int direction = (previous + turn) % 8;
    if (IsEdge(map, Neighbour(at, direction))) return direction;
  }
  return std::nullopt;
}

/// One pass from a chain's start: the pixels taken, which are cleared.
inline std::vector<Pixel> ReferencePass(Grid& map, Pixel start) {
  std::vector<Pixel> taken;
  Pixel at = start;
  int direction = 2;
  while (const std::optional<int> next = NextDirection(map, at, direction)) {
    direction = *next;
    at = Neighbour(at, direction);
    At(map, at.column, at.row) = 0;
    taken.push_back(at);
  }
  return taken;
}

inline TestPoint ReferencePointOf(Pixel p, const CEdgeImgComplement* edges) {
  if (edges != nullptr) {
    const int cell = p.row * edges->width + p.column;
    if (edges->valid[cell] != 0) return {edges->x[cell], edges->y[cell], edges->g[cell], 0};
  }
  return {double(p.column), double(p.row), 0, 0};
}

inline double ReferenceDistance(const TestPoint& a, const TestPoint& b) {
  const double dx = a.x - b.x;
  const double dy = a.y - b.y;
  return std::sqrt(dx * dx + dy * dy);
}

/// The chain that starts at an edge pixel; its pixels are cleared.
inline TestContour ReferenceChain(Grid& map, Pixel start, const CEdgeImgComplement* edges) {
  std::vector<TestPoint> forward = {ReferencePointOf(start, edges)};
  for (const Pixel p : ReferencePass(map, start))
    forward.push_back(ReferencePointOf(p, edges));
  std::vector<TestPoint> backward;
  for (const Pixel p : ReferencePass(map, start))
    backward.push_back(ReferencePointOf(p, edges));
  At(map, start.column, start.row) = 0;

  TestContour chain;
  if (forward.size() >= 2) {
    const TestPoint& other_end = backward.empty() ? forward.front() : backward.back();
    chain.closed = ReferenceDistance(other_end, forward.back()) < 3.0;
  }
  if (backward.size() >= 2) {
    chain.points.assign(backward.rbegin(), backward.rend());
    chain.points.insert(chain.points.end(), forward.begin(), forward.end());
  } else {  // a single backward point stays behind the forward points
    chain.points = forward;
    chain.points.insert(chain.points.end(), backward.begin(), backward.end());
  }
  return chain;
}

/// All contours of an edge map, in the order of their start pixels; followed pixels are cleared.
inline std::vector<TestContour> ReferenceTrace(Grid& map, const CEdgeImgComplement* edges,
                                               int min_size, int max_size) {
  std::vector<TestContour> contours;
  for (int row = 1; row < Height(map); ++row) {
    for (int column = 1; column < Width(map); ++column) {
      if (!IsEdge(map, {column, row})) continue;
      const TestContour chain = ReferenceChain(map, {column, row}, edges);
      const int size = static_cast<int>(chain.points.size());
      if (size >= min_size && size <= max_size) contours.push_back(chain);
    }
  }
  return contours;
}

}  // namespace orvandel::test
