#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <vector>

#include "orvandel/orvandel.h"

namespace orvandel::fuzz {

/// How a host lays out an image.
struct HostLayout {
  int bits_per_pixel = 8;
  int gap = 0;  ///< pixels between the end of a row and the next one
  bool is_bottom_up = false;
};

/// A host's image. The memory ends with the last pixel, so that reading on is an error that the address sanitizer sees.
class HostImage {
 public:
  HostImage(int width, int height, const HostLayout& layout)
      : width_(width),
        height_(height),
        layout_(layout),
        bytes_(static_cast<std::size_t>(RowDistance() * (height - 1) + width * BytesPerPixel()),
               0x5A) {}

  int Width() const { return width_; }
  int Height() const { return height_; }
  int MostGrey() const { return layout_.bits_per_pixel == 8 ? 255 : 65535; }

  void Set(int x, int y, int grey) {
    const auto value = static_cast<std::uint16_t>(grey);
    if (layout_.bits_per_pixel == 8) {
      bytes_[OffsetOf(x, y)] = static_cast<std::uint8_t>(value);
    } else {
      std::memcpy(&bytes_[OffsetOf(x, y)], &value, sizeof value);
    }
  }

  int At(int x, int y) const {
    if (layout_.bits_per_pixel == 8) return bytes_[OffsetOf(x, y)];
    std::uint16_t value;
    std::memcpy(&value, &bytes_[OffsetOf(x, y)], sizeof value);
    return value;
  }

  orv_image AsC() const {
    orv_image image;
    orv_image_init(&image, &bytes_[OffsetOf(0, 0)], width_, height_, layout_.bits_per_pixel);
    image.stride = layout_.is_bottom_up ? -RowDistance() : RowDistance();
    return image;
  }

  /// The same pixels, laid out in another way.
  HostImage As(const HostLayout& layout) const {
    HostImage copy(width_, height_, layout);
    for (int y = 0; y < height_; ++y) {
      for (int x = 0; x < width_; ++x)
        copy.Set(x, y, At(x, y));
    }
    return copy;
  }

  const HostLayout& Layout() const { return layout_; }

 private:
  std::int64_t BytesPerPixel() const { return layout_.bits_per_pixel / 8; }
  std::int64_t RowDistance() const { return (width_ + layout_.gap) * BytesPerPixel(); }
  std::size_t OffsetOf(int x, int y) const {
    const int row = layout_.is_bottom_up ? height_ - 1 - y : y;
    return static_cast<std::size_t>(row * RowDistance() + x * BytesPerPixel());
  }

  int width_;
  int height_;
  HostLayout layout_;
  std::vector<std::uint8_t> bytes_;
};

}  // namespace orvandel::fuzz
