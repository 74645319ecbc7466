#pragma once

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "image/image_view.h"
#include "platform/image_ptr.h"

namespace orvandel::test {

/// Grey values with a view on them, for tests.
template <typename Pixel>
struct GreyImageOf {
  std::int32_t width = 0;
  std::int32_t height = 0;
  std::vector<Pixel> pixels;

  GreyImageOf(std::int32_t w, std::int32_t h, Pixel value = 0)
      : width(w),
        height(h),
        pixels(static_cast<std::size_t>(w) * static_cast<std::size_t>(h), value) {}

  Pixel& At(std::int32_t x, std::int32_t y) {
    return pixels[static_cast<std::size_t>(y) * static_cast<std::size_t>(width) +
                  static_cast<std::size_t>(x)];
  }
  ImageViewOf<Pixel> View() const {
    return {pixels.data(), width, height,
            static_cast<std::ptrdiff_t>(width) * static_cast<std::ptrdiff_t>(sizeof(Pixel))};
  }
};

using GreyImage = GreyImageOf<std::uint8_t>;
using DeepImage = GreyImageOf<std::uint16_t>;

/// A copy of a rendered image.
inline GreyImage ToGreyImage(const ImagePtr& rendered) {
  GreyImage image(rendered->width, rendered->height);
  for (std::int32_t y = 0; y < image.height; ++y)
    std::copy_n(rendered->row[y], image.width, &image.At(0, y));
  return image;
}

}  // namespace orvandel::test
