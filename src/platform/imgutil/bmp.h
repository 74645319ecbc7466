#pragma once

#include "platform/imgutil/image_codec.h"

namespace orvandel {

/// Windows bitmaps with 8 bits a pixel and a palette, or 24 or 32 bits; bottom-up or top-down; not
/// compressed. Knowledge files are of this kind, so it is read strictly: a palette index beyond the
/// palette or a missing byte of pixel data is an error.
extern const ImageFileReader kBmpReader;

/// Writes 8 bits a pixel with a grey palette of 256 entries, bottom-up.
ImageFileError EncodeBmp(const tImage& image, Bytes& file);

}  // namespace orvandel
