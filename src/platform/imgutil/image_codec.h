#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "orvandel/classic/imgutil_i.h"

namespace orvandel {

using Bytes = std::vector<std::uint8_t>;
using ByteView = std::span<const std::uint8_t>;

inline constexpr ImageFileError kImageFileOk{};

/// Longest width or height, in pixels, that is read or written.
inline constexpr std::int64_t kMaxImageFileSide = 65535;

/// What an image file says of itself before its pixels.
struct ImageFileInfo {
  int width = 0;   ///< pixels
  int height = 0;  ///< pixels
  int channels = 0;
  int bits_per_channel = 0;

  std::uint64_t NumPixels() const {
    return static_cast<std::uint64_t>(width) * static_cast<std::uint64_t>(height);
  }
};

/// Takes the size that a file states, if an image may have it.
inline ImageFileError TakeSize(std::int64_t width, std::int64_t height, ImageFileInfo& info) {
  if (width < 1 || height < 1) return kImageFileForeign;
  if (width > kMaxImageFileSide || height > kMaxImageFileSide) return kImageFileTooLarge;
  info.width = static_cast<int>(width);
  info.height = static_cast<int>(height);
  return kImageFileOk;
}

/// Reads and writes one file format, in memory. Nothing here allocates more than the file's own
/// length makes plausible: a header alone cannot ask for gigabytes.
struct ImageFileReader {
  /// Reads the header from the beginning of a file; `kImageFileTruncated` where more is needed.
  /// `file_size` is the length of the whole, against which the image's size is checked.
  ImageFileError (*read_info)(ByteView beginning, std::uint64_t file_size, ImageFileInfo& info);
  /// Decodes a whole file into grey values, row by row without padding. `info` is what `read_info`
  /// made of the same file.
  ImageFileError (*decode)(ByteView file, const ImageFileInfo& info, Bytes& grey);
};

/// Encodes an 8-bit grey image of at most `kMaxImageFileSide` pixels a side.
using ImageFileWriter = ImageFileError (*)(const tImage& image, Bytes& file);

/// Appends the pixels of an image, row by row without padding.
inline void AppendPixels(const tImage& image, Bytes& bytes) {
  for (int y = 0; y < image.height; ++y)
    bytes.insert(bytes.end(), image.row[y], image.row[y] + image.width);
}

}  // namespace orvandel
