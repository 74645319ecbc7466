#pragma once

#include <cstdint>
#include <vector>

#include "image/gradients.h"

namespace orvandel::shape {

/// Directions of scene edges are kept finer than those that votes are told apart by, so that a vote can be graded.
inline constexpr int kDirectionCodes = 64;

/// An edge pixel of the scene: a peak of the gradient along its direction.
struct SceneEdge {
  std::uint16_t x = 0;
  std::uint16_t y = 0;
  std::uint16_t code = 0;  ///< direction, 0 .. kDirectionCodes - 1, clockwise from the x axis
};

struct SceneEdgeBuffers {
  std::vector<std::int32_t> squares;  ///< of the gradients' lengths, three rows
  std::vector<std::uint8_t> marks;    ///< of a row
};

/// Edge pixels of a plane in image order: gradients above `least_strength` that no neighbour along the gradient
/// exceeds, of eight.
void FindSceneEdges(const GradientPlane& gradients, float least_strength, SceneEdgeBuffers& buffers,
                    std::vector<SceneEdge>& edges);

}  // namespace orvandel::shape
