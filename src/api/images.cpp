#include "api/images.h"

#include <cstdint>

#include "api/sized_structs.h"

namespace orvandel::api {
namespace {

/// Larger sides leave a float no hundredth of a pixel; more pixels overflow 32-bit counts.
constexpr std::int32_t kLargestSide = 1 << 17;
constexpr std::int64_t kMostPixels = std::int64_t{1} << 30;

orv_image Described(const void* pixels, std::int32_t width, std::int32_t height,
                    std::int32_t bits_per_pixel) {
  orv_image image = {};
  image.struct_size = sizeof image;
  image.pixels = pixels;
  image.width = width;
  image.height = height;
  image.stride = std::int64_t{width} * (bits_per_pixel / 8);
  image.bits_per_pixel = bits_per_pixel;
  return image;
}

void CheckStride(const orv_image& image, std::int64_t bytes_per_pixel) {
  Require(image.stride % bytes_per_pixel == 0,
          "The stride of the image is not a whole number of pixels.");
  constexpr std::int64_t kLargestStride = std::int64_t{1} << 40;
  Require(image.stride > -kLargestStride && image.stride < kLargestStride,
          "The stride of the image is too large.");
  const std::int64_t distance = image.stride < 0 ? -image.stride : image.stride;
  Require(image.height == 1 || distance >= image.width * bytes_per_pixel,
          "The stride of the image is smaller than a row.");
}

template <typename Pixel>
ImageViewOf<Pixel> TypedView(const orv_image& image) {
  CheckStride(image, sizeof(Pixel));
  Require(reinterpret_cast<std::uintptr_t>(image.pixels) % alignof(Pixel) == 0,
          "The pixels of a 16-bit image must lie at an even address.");
  return {static_cast<const Pixel*>(image.pixels), image.width, image.height,
          static_cast<std::ptrdiff_t>(image.stride)};
}

}  // namespace

ImageView ViewOf(const orv_image* given, const char* null_message) {
  Require(given != nullptr, null_message);
  const orv_image image = ReadSized(given, Described(nullptr, 0, 0, 8));
  Require(image.pixels != nullptr, "The image has no pixels: its pointer is null.");
  Require(image.width >= 1 && image.height >= 1,
          "The width and height of the image must be 1 or more.");
  Require(image.width <= kLargestSide && image.height <= kLargestSide,
          "The width and height of the image must not exceed 131072.");
  Require(std::int64_t{image.width} * image.height <= kMostPixels,
          "The image has more than 1073741824 pixels.");
  if (image.bits_per_pixel == 8) return TypedView<std::uint8_t>(image);
  if (image.bits_per_pixel == 16) return TypedView<std::uint16_t>(image);
  RejectArgument("The bits per pixel of the image must be 8 or 16.");
}

}  // namespace orvandel::api

void orv_image_init(orv_image* image, const void* pixels, int32_t width, int32_t height,
                    int32_t bits_per_pixel) {
  if (image != nullptr) *image = orvandel::api::Described(pixels, width, height, bits_per_pixel);
}
