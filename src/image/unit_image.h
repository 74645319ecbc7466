#pragma once

#include <cstdint>

#include "image/image_view.h"

namespace orvandel {

/// Grey units of a pyramid for one grey level of an 8-bit image: means of a few pixels keep their
/// fractions, so that a contrast of some grey levels survives the halvings.
inline constexpr int kUnitsPerGrey = 16;

/// Largest value of a pyramid's pixel. Sums of a Sobel mask over such values fit 16 bits.
inline constexpr int kMaxUnits = 4095;

/// An image in pyramid units, made row by row where they are needed: a plane of them would be twice as large as the image. An
/// image of more than 8 bits is brought to 12 by a power of two that its brightest pixel decides.
class UnitImage {
 public:
  UnitImage() = default;
  /// Keeps the view.
  explicit UnitImage(const ImageView& image);

  std::int32_t Width() const { return width_; }
  std::int32_t Height() const { return height_; }

  /// Writes the pixels `first` to `first + count` - 1 of a row.
  void CopyRow(std::int32_t y, std::int32_t first, std::int32_t count, std::uint16_t* to) const;

 private:
  ImageView image_;
  std::int32_t width_ = 0;
  std::int32_t height_ = 0;
  int up_ = 0;  ///< shifts of deep images
  int down_ = 0;
};

}  // namespace orvandel
