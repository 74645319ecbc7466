#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "platform/image_ptr.h"

namespace orvandel::evaluation {

/// The image in a file, as 8-bit grey, and with all its bits where it has more.
struct ImageFile {
  std::string path;
  ImagePtr image;
  int channels = 1;  ///< in the file: 1 grey, 2 grey and alpha, 3 colour, 4 colour and alpha
  int bits_per_channel = 8;  ///< in the file
  /// All bits of a grey PNG of 16, row by row without gaps; empty for other files.
  std::vector<std::uint16_t> grey16 = {};

  bool WasConverted() const { return channels != 1 || bits_per_channel > 8; }
};

/// Largest image that contours are found in, pixels each way.
inline constexpr int kMaxImageSide = 65535;

/// Reads an image of 1 to 65535 pixels each way. Throws FileError when there is none in the file.
ImageFile ReadImage(const std::string& path);

/// An empty image of that size; `path` is what the FileError names when there is no memory for it.
ImagePtr NewImage(const std::string& path, int width, int height);

/// A copy of the pixels, for training and searching, which overwrite the image that they are given.
/// Throws FileError when there is no memory for it.
ImagePtr CopyOf(const ImageFile& file);

}  // namespace orvandel::evaluation
