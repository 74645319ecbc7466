#pragma once

#include "platform/imgutil/image_codec.h"

namespace orvandel {

/// Portable grey and colour maps, plain (P2, P3) and raw (P5, P6), with comments. Samples are
/// scaled from the file's greatest value to 255, rounded; a greatest value of 255 changes nothing.
extern const ImageFileReader kPnmReader;

/// Writes a raw grey map (P5) with greatest value 255.
ImageFileError EncodePgm(const tImage& image, Bytes& file);

}  // namespace orvandel
