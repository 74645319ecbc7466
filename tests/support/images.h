#pragma once

#include <cstdint>
#include <functional>

#include "platform/image_ptr.h"

namespace orvandel::test {

/// An 8-bit grey image whose pixel in column x, row y is value(x, y).
inline ImagePtr MakeImage(int width, int height, const std::function<int(int x, int y)>& value) {
  ImagePtr image(im_create(1, width, height));
  for (int y = 0; y < height; ++y) {
    for (int x = 0; x < width; ++x)
      image->row[y][x] = static_cast<std::uint8_t>(value(x, y));
  }
  return image;
}

inline ImagePtr CopyOf(const ImagePtr& image) {
  return ImagePtr(im_duplicate(image.get()));
}

}  // namespace orvandel::test
