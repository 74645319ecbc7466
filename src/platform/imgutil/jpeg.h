#pragma once

#include "platform/imgutil/image_codec.h"

namespace orvandel {

/// JPEG, baseline and progressive, 8 bits. A file without its end marker is refused; pixel data
/// that are missing or damaged before it cannot always be told.
extern const ImageFileReader kJpegReader;

/// Writes at quality 95, as three equal channels. Refuses more than `kMaxCodecBytes` pixels.
ImageFileError EncodeJpeg(const tImage& image, Bytes& file);

}  // namespace orvandel
