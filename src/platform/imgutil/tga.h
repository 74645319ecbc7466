#pragma once

#include "platform/imgutil/image_codec.h"

namespace orvandel {

/// Writes a Truevision file, 8-bit grey, run-length coded. Refuses more than `kMaxCodecBytes`
/// pixels.
ImageFileError EncodeTga(const tImage& image, Bytes& file);

}  // namespace orvandel
