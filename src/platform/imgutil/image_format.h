#pragma once

#include <filesystem>

#include "platform/imgutil/image_codec.h"

namespace orvandel {

// Values of `file_type` at the interface.
inline constexpr int kFileTypeByExtension = 0;
inline constexpr int kFileTypeBmp = 1;

/// The reader for a path; null for an unknown file type. Letter case does not matter.
const ImageFileReader* ReaderFor(const std::filesystem::path& path, int file_type);

/// The writer for a path; null for an unknown file type.
ImageFileWriter WriterFor(const std::filesystem::path& path, int file_type);

}  // namespace orvandel
