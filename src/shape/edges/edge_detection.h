#pragma once

#include <cstddef>
#include <vector>

#include "image/image_view.h"
#include "shape/edges/edge_points.h"

namespace orvandel::shape::edges {

/// Gradients weaker than this are noise in most images: a step of 32 grey levels of 255.
inline constexpr float kUsualLeastStrength = 12.0F;

/// Working rows of the detector. Kept from image to image it saves the allocations; what is in it
/// never changes a result. One thread at a time.
class EdgeWorkspace {
 public:
  /// A block of at least `num_bytes` that starts at a cache line, zero where it was never written.
  /// @throws std::bad_alloc
  std::byte* Reserve(std::size_t num_bytes) {
    const std::size_t num_lines = (num_bytes + sizeof(CacheLine) - 1) / sizeof(CacheLine);
    if (lines_.size() < num_lines) lines_.resize(num_lines);
    return reinterpret_cast<std::byte*>(lines_.data());
  }

 private:
  struct alignas(64) CacheLine {
    std::byte bytes[64];
  };
  std::vector<CacheLine> lines_;
};

/// Finds the edge points of a grey image with sub-pixel positions: local maxima of the gradient
/// across the edge, after J. Canny, "A computational approach to edge detection", IEEE PAMI 8(6),
/// 1986, with a 3 x 3 binomial filter in the place of the Gaussian and one threshold in the place
/// of hysteresis. docs/edge-points.md tells the method and its errors.
///
/// The three outermost rows and columns hold no points; an image narrower or lower than 7 pixels
/// has none. So the points of a window are those of the whole image that lie in it, but for its own
/// border.
///
/// @param least_strength  grey levels per pixel, at least 0 and a number; weaker gradients are left
///                        out, one of just that length stays. A sharp step of height h has the
///                        strength 0.375 h.
/// @param points          receives the points of `image.height` rows in the place of what it held.
/// @throws std::bad_alloc
void DetectEdgePoints(const ImageView8& image, float least_strength, EdgeWorkspace& workspace,
                      EdgePoints& points);
void DetectEdgePoints(const ImageView16& image, float least_strength, EdgeWorkspace& workspace,
                      EdgePoints& points);

}  // namespace orvandel::shape::edges
