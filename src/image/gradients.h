#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "image/pyramid.h"

namespace orvandel {

/// Gradient units for a slope of one grey level of an 8-bit image a pixel: the Sobel mask weighs 8.
inline constexpr float kUnitsPerSlope = 8.0f * kUnitsPerGrey;

/// Noise of a Sobel component per unit of the pixels' noise, after division by 8: sqrt(12) / 8.
inline constexpr double kSobelNoise = 0.4330127018922193;

/// The gradient of a pixel in one word, so that one load fetches both components: x in the low 16 bits,
/// y in the high ones.
inline std::int32_t PackGradient(int x, int y) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(y) << 16 |
                                   (static_cast<std::uint32_t>(x) & 0xffffu));
}
inline int GradientX(std::int32_t packed) {
  return static_cast<std::int16_t>(static_cast<std::uint32_t>(packed) & 0xffffu);
}
inline int GradientY(std::int32_t packed) {
  return packed >> 16;
}

/// The gradients of a plane, rows without gaps; 0 in the outermost rows and columns.
struct GradientPlane {
  std::int32_t width = 0;
  std::int32_t height = 0;
  std::vector<std::int32_t> packed;

  const std::int32_t* Row(std::int32_t y) const {
    return packed.data() + static_cast<std::size_t>(y) * static_cast<std::size_t>(width);
  }
};

/// Sobel gradients. Method: I. Sobel, G. Feldman, "A 3x3 isotropic gradient operator for image
/// processing", talk at the Stanford Artificial Intelligence Project, 1968.
void ComputeGradients(const GreyPlane& plane, GradientPlane& gradients);

}  // namespace orvandel
