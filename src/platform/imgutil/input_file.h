#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>

#include "platform/imgutil/image_codec.h"

namespace orvandel {

/// An image file open for reading. Only regular files open: an image's header and its pixels are
/// read by two calls, and its length says how much a header may claim.
class InputFile {
 public:
  explicit InputFile(const std::filesystem::path& path);

  bool IsOpen() const { return stream_.is_open(); }
  std::uint64_t Size() const { return size_; }

  /// The file's first `count` bytes, or all of them where it is shorter.
  ///
  /// @return  `kImageFileCannotOpen` where the disk fails.
  ImageFileError ReadBeginning(std::uint64_t count, Bytes& bytes);

 private:
  std::uint64_t size_ = 0;
  std::ifstream stream_;
};

}  // namespace orvandel
