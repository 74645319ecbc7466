#pragma once

#include <cstddef>
#include <vector>

namespace orvandel::shape {

/// Grey values that are neither rounded nor clipped.
struct FloatImage {
  int width = 0;
  int height = 0;
  std::vector<float> grey;  ///< row by row

  void Resize(int new_width, int new_height) {
    width = new_width;
    height = new_height;
    grey.resize(static_cast<std::size_t>(width) * static_cast<std::size_t>(height));
  }
  float* Row(int y) { return grey.data() + static_cast<std::ptrdiff_t>(y) * width; }
  const float* Row(int y) const { return grey.data() + static_cast<std::ptrdiff_t>(y) * width; }
};

}  // namespace orvandel::shape
