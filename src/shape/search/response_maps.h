#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "shape/search/response_kernels.h"
#include "shape/search/scene_edges.h"

namespace orvandel::shape {

/// The most that an edge point of the pattern can get from the scene.
inline constexpr int kFullVote = 4;

/// How the sign of an edge counts.
enum class EdgeSign : std::uint8_t { kSame, kReversed, kEither };

/// For each of 16 directions an image of what an edge of that direction would get at each grid position: 4 for an
/// edge there whose direction is right within 17 degrees, less for one that is rotated by up to 50 degrees or lies next to
/// the grid cell. Around the grid is a frame, so that patterns may stick out: each point there gets the same.
class ResponseMaps {
 public:
  /// @param edges   in image order, of the plane one level finer than the grid if `is_pooled`, else of the grid's own
  /// @param frame   positions by which points may lie outside the grid
  void Build(std::span<const SceneEdge> edges, bool is_pooled, std::int32_t width,
             std::int32_t height, std::int32_t frame, EdgeSign sign);

  /// Sets what each point in the frame gets; 0 after the first build.
  void SetOutsideVote(std::uint8_t vote);
  int OutsideVote() const { return outside_vote_; }

  std::int32_t Width() const { return width_; }
  std::int32_t Height() const { return height_; }
  std::ptrdiff_t Stride() const { return stride_; }
  /// Bytes from a direction's map to the next one's.
  std::ptrdiff_t PlaneSize() const { return plane_size_; }
  /// Grid position (0, 0) of the first direction's map. Behind the last map lies one more, of nothing.
  const std::uint8_t* Origin() const { return planes_.data() + first_; }

 private:
  void Shape(std::int32_t width, std::int32_t height, std::int32_t frame);

  std::int32_t width_ = 0;
  std::int32_t height_ = 0;
  std::int32_t frame_ = 0;
  std::ptrdiff_t stride_ = 0;
  std::ptrdiff_t plane_size_ = 0;
  std::ptrdiff_t first_ = 0;
  std::uint8_t outside_vote_ = 0;
  std::vector<std::uint8_t> cells_;  ///< 16 votes a grid position, of three rows
  std::vector<std::uint8_t> planes_;
};

}  // namespace orvandel::shape
