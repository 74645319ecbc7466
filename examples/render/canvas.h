#pragma once

#include <cstdint>
#include <vector>

#include "examples/render/coverage.h"
#include "platform/image_ptr.h"

namespace orvandel::render {

/// An image in the making: grey values that are neither rounded nor clipped until it is done.
class Canvas {
 public:
  Canvas(Size size, double ground);

  /// Paints a shape over what is there; a pixel it covers in part becomes a mixture of both.
  void Paint(const Shape& shape, const Pose& image_from_part);

  /// Moves every value away from `ground` (factor above 1) or towards it.
  void ScaleContrast(double ground, double factor);

  /// Gaussian blur; the border's values go on outside. A sigma of 0 changes nothing.
  void Blur(double sigma_px);

  /// Dims the image along a direction, linearly from full light at the side that the direction
  /// comes from to 1 - `falloff` of it at the other.
  void Dim(double falloff, double direction_deg);

  void AddNoise(double sigma, std::uint64_t seed);

  /// Sum of all values.
  double Total() const;

  /// Values rounded to the nearest grey level, 0 to 255. Null when the image cannot be made.
  ImagePtr Round() const;

 private:
  double* Row(int y);

  Size size_;
  std::vector<double> grey_;
};

}  // namespace orvandel::render
