#pragma once

#include <filesystem>

#include "platform/imgutil/picture.h"

namespace orvandel {

// Values of `file_type` at the interface.
inline constexpr int kFileTypeByExtension = 0;
inline constexpr int kFileTypeBmp = 1;

/// The reader for a path; null for an unknown file type. Letter case does not matter.
const PictureReader* ReaderFor(const std::filesystem::path& path, int file_type);

/// The writer for a path; null for an unknown file type.
PictureWriter WriterFor(const std::filesystem::path& path, int file_type);

}  // namespace orvandel
