#include "fuzz/image_file.h"

#include <algorithm>
#include <cstdint>
#include <span>

#include "fuzz/files.h"
#include "fuzz/require.h"
#include "platform/image_ptr.h"

namespace orvandel::fuzz {
namespace {

constexpr int kByExtension = 0;

/// Larger images are refused or read in the same way, only slower.
constexpr std::int64_t kMostPixels = 1 << 16;

Bytes PixelsOf(const tImage& image) {
  Bytes pixels;
  for (int y = 0; y < image.height; ++y)
    pixels.insert(pixels.end(), image.row[y], image.row[y] + image.width);
  return pixels;
}

void Fill(tImage& image, std::uint8_t value) {
  for (int y = 0; y < image.height; ++y)
    std::fill_n(image.row[y], image.width, value);
}

/// Reads over pixels of one value.
int ReadOver(std::uint8_t value, tImage& image, const std::string& path, Bytes& pixels) {
  Fill(image, value);
  const int error = im_file_read(&image, path.c_str(), kByExtension);
  pixels = PixelsOf(image);
  return error;
}

}  // namespace

void ReadAsImageFile(const std::uint8_t* data, std::size_t size, const std::string& extension) {
  static const ScratchFolder folder;
  const std::string path = folder.File("image" + extension);
  WriteBytes(path, {data, size});

  int width = 0, height = 0, channels = 0, bits = 0;
  const bool has_size =
      im_file_get_size(path.c_str(), kByExtension, &width, &height, &channels, &bits) == 0;
  if (!has_size) width = height = 1;
  ORVANDEL_REQUIRE(width >= 1 && height >= 1);
  if (has_size) ORVANDEL_REQUIRE(channels >= 1 && channels <= 4 && bits >= 1 && bits <= 16);
  if (std::int64_t{width} * height > kMostPixels) return;

  const ImagePtr image(im_create(1, width, height));
  ORVANDEL_REQUIRE(image != nullptr);
  Bytes once, again;
  const int error = ReadOver(17, *image, path, once);
  ORVANDEL_REQUIRE(ReadOver(238, *image, path, again) == error);
  if (error == 0) {
    ORVANDEL_REQUIRE(has_size && once == again);
  } else {
    ORVANDEL_REQUIRE(once == Bytes(once.size(), 17) && again == Bytes(again.size(), 238));
  }
}

}  // namespace orvandel::fuzz
