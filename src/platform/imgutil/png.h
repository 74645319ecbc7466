#pragma once

#include "platform/imgutil/image_codec.h"

namespace orvandel {

/// Portable network graphics of every colour type and depth. 16-bit samples keep their high byte;
/// alpha is passed over. Every chunk is there and its checksum right, or the file is refused.
extern const ImageFileReader kPngReader;

/// Writes 8-bit grey. Refuses more than `kMaxCodecBytes` pixels.
ImageFileError EncodePng(const tImage& image, Bytes& file);

}  // namespace orvandel
