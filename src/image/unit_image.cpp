#include "image/unit_image.h"

#include <algorithm>

#include "image/row_kernels.h"

namespace orvandel {
namespace {

std::uint16_t BrightestPixel(const ImageView16& image) {
  std::uint16_t brightest = 0;
  for (std::int32_t y = 0; y < image.height; ++y) {
    const std::uint16_t* const row = image.Row(y);
    for (std::int32_t x = 0; x < image.width; ++x)
      brightest = std::max(brightest, row[x]);
  }
  return brightest;
}

}  // namespace

UnitImage::UnitImage(const ImageView& image) : image_(image) {
  std::visit(
      [this](const auto& view) {
        width_ = view.width;
        height_ = view.height;
      },
      image);
  const auto* const deep = std::get_if<ImageView16>(&image);
  if (deep == nullptr) return;
  const int brightest = BrightestPixel(*deep);
  while (brightest > 0 && (brightest << (up_ + 1)) <= kMaxUnits)
    ++up_;
  while ((brightest >> down_) > kMaxUnits)
    ++down_;
}

void UnitImage::CopyRow(std::int32_t y, std::int32_t first, std::int32_t count,
                        std::uint16_t* to) const {
  static_assert(kUnitsPerGrey == 1 << 4);
  if (const auto* const image = std::get_if<ImageView8>(&image_)) {
    ImageRowKernelsOf(ActiveSimdLevel()).widen_row(image->Row(y) + first, count, to);
    return;
  }
  const std::uint16_t* const from = std::get<ImageView16>(image_).Row(y) + first;
  for (std::int32_t x = 0; x < count; ++x)
    to[x] = static_cast<std::uint16_t>((from[x] << up_) >> down_);
}

}  // namespace orvandel
