#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "image/gradients.h"

namespace orvandel::shape {

/// Directions that votes are told apart by, a whole turn.
inline constexpr int kDirectionBins = 16;

/// Directions of scene edges are kept finer, so that a vote can be graded.
inline constexpr int kDirectionCodes = 64;

/// The most that an edge point of the pattern can get from the scene.
inline constexpr int kFullVote = 4;

/// How the sign of an edge counts.
enum class EdgeSign : std::uint8_t { kSame, kReversed, kEither };

/// An edge pixel of the scene: a peak of the gradient along its direction.
struct SceneEdge {
  std::uint16_t x = 0;
  std::uint16_t y = 0;
  std::uint16_t code = 0;  ///< direction, 0 .. kDirectionCodes - 1, clockwise from the x axis
};

/// Edge pixels of a plane in image order: gradients of at least `least_strength` that no neighbour along
/// the gradient exceeds.
void FindSceneEdges(const GradientPlane& gradients, float least_strength,
                    std::vector<SceneEdge>& edges);

/// For each of 16 directions an image of what an edge of that direction would get at each grid position: 4 for an
/// edge there whose direction is right within 17 degrees, less for one that is rotated by up to 50 degrees or lies next to
/// the grid cell. Around the grid is a frame of nothing, so that patterns may stick out.
class ResponseMaps {
 public:
  /// @param edges   of the plane one level finer than the grid if `is_pooled`, else of the grid's own
  /// @param frame   positions by which points may lie outside the grid
  void Build(std::span<const SceneEdge> edges, bool is_pooled, std::int32_t width,
             std::int32_t height, std::int32_t frame, EdgeSign sign);

  std::int32_t Width() const { return width_; }
  std::int32_t Height() const { return height_; }
  std::ptrdiff_t Stride() const { return stride_; }
  /// Bytes from a direction's map to the next one's.
  std::ptrdiff_t PlaneSize() const { return plane_size_; }
  /// Grid position (0, 0) of the first direction's map. Behind the last map lies one more, of nothing.
  const std::uint8_t* Origin() const { return planes_.data() + first_; }

 private:
  std::int32_t width_ = 0;
  std::int32_t height_ = 0;
  std::ptrdiff_t stride_ = 0;
  std::ptrdiff_t plane_size_ = 0;
  std::ptrdiff_t first_ = 0;
  std::vector<std::uint8_t> cells_;  ///< 16 votes a grid position
  std::vector<std::uint8_t> planes_;
};

}  // namespace orvandel::shape
