#pragma once

#include <algorithm>
#include <cstdint>

#include "fuzz/byte_source.h"
#include "platform/image_ptr.h"

namespace orvandel::fuzz {

/// Rectangles painted over each other, so that few bytes make straight edges and corners.
inline ImagePtr PaintedImage(ByteSource& source, int width, int height, int num_rectangles) {
  ImagePtr image(im_create(1, width, height));
  for (int i = 0; i < num_rectangles && !source.IsEmpty(); ++i) {
    const int left = source.Byte() % width;
    const int top = source.Byte() % height;
    const int right = std::min(width, left + 1 + source.Byte() % width);
    const int bottom = std::min(height, top + 1 + source.Byte() % height);
    const auto grey = static_cast<std::uint8_t>(source.Byte());
    for (int y = top; y < bottom; ++y)
      std::fill(image->row[y] + left, image->row[y] + right, grey);
  }
  return image;
}

/// The bytes as pixels, over and over until the image is full.
inline ImagePtr TiledImage(std::span<const std::uint8_t> bytes, int width, int height) {
  ImagePtr image(im_create(1, width, height));
  std::size_t next = 0;
  for (int y = 0; y < height && !bytes.empty(); ++y) {
    for (int x = 0; x < width; ++x) {
      image->row[y][x] = bytes[next];
      next = (next + 1) % bytes.size();
    }
  }
  return image;
}

}  // namespace orvandel::fuzz
