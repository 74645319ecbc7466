#pragma once

#include <cstddef>
#include <cstdint>
#include <variant>

namespace orvandel {

/// A grey image that belongs to somebody else: pixels are only read, and only while the view is used.
///
/// The centre of the top-left pixel is (0, 0); x runs right, y down.
template <typename Pixel>
struct ImageViewOf {
  const Pixel* pixels = nullptr;  ///< of the top row
  std::int32_t width = 0;
  std::int32_t height = 0;
  std::ptrdiff_t stride = 0;  ///< bytes from a row to the one below; negative for bottom-up images

  const Pixel* Row(std::int32_t y) const {
    return reinterpret_cast<const Pixel*>(reinterpret_cast<const std::byte*>(pixels) + y * stride);
  }
  bool IsEmpty() const { return pixels == nullptr || width <= 0 || height <= 0; }
};

using ImageView8 = ImageViewOf<std::uint8_t>;
using ImageView16 = ImageViewOf<std::uint16_t>;

/// An image of either depth.
using ImageView = std::variant<ImageView8, ImageView16>;

}  // namespace orvandel
