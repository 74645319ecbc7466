#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "orvandel/classic/imgutil_i.h"
#include "tests/platform/files.h"
#include "tests/support/images.h"

namespace orvandel::test {

/// Rows of grey values, from the top.
using Pixels = std::vector<std::vector<int>>;

inline Pixels PixelsOf(const tImage& image) {
  Pixels pixels;
  for (int y = 0; y < image.height; ++y)
    pixels.emplace_back(image.row[y], image.row[y] + image.width);
  return pixels;
}

/// Grey values that differ from their neighbours, with black and white among them.
inline ImagePtr MakeTexture(int width, int height) {
  return MakeImage(width, height, [](int x, int y) { return (x * 71 + y * 151) % 256; });
}

/// A smooth grey ramp.
inline ImagePtr MakeRamp(int width, int height) {
  return MakeImage(width, height, [](int x, int y) { return 40 + 3 * x + 2 * y; });
}

/// What an image file's header says.
struct FileInfo {
  int error = 0;
  int width = -1;
  int height = -1;
  int channels = -1;
  int bits = -1;

  bool operator==(const FileInfo&) const = default;
};

inline FileInfo InfoOf(const std::filesystem::path& path, int file_type = 0) {
  FileInfo info;
  info.error = im_file_get_size(Utf8(path).c_str(), file_type, &info.width, &info.height,
                                &info.channels, &info.bits);
  return info;
}

/// The result of reading an image file into an image of its size.
struct ReadResult {
  int error = 0;
  Pixels pixels;
};

/// Reads into an image of the given size that held the value 77 everywhere.
inline ReadResult ReadImageFile(const std::filesystem::path& path, int width, int height,
                                int file_type = 0) {
  const ImagePtr image = MakeImage(width, height, [](int, int) { return 77; });
  const int error = im_file_read(image.get(), Utf8(path).c_str(), file_type);
  return {error, PixelsOf(*image)};
}

inline Pixels Untouched(int width, int height) {
  return Pixels(static_cast<std::size_t>(height),
                std::vector<int>(static_cast<std::size_t>(width), 77));
}

/// A file's bytes as an image file of its own, tried out.
class BytesAsImageFile {
 public:
  explicit BytesAsImageFile(const std::string& extension)
      : path_(folder_ / ("image" + extension)) {}

  const std::filesystem::path& Path() const { return path_; }
  FileInfo Info(const Bytes& bytes) const {
    WriteBytes(path_, bytes);
    return InfoOf(path_);
  }
  ReadResult Read(const Bytes& bytes, int width, int height) const {
    WriteBytes(path_, bytes);
    return ReadImageFile(path_, width, height);
  }

 private:
  ScratchFolder folder_;
  std::filesystem::path path_;
};

}  // namespace orvandel::test
