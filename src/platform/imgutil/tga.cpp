#include "platform/imgutil/tga.h"

#include "platform/imgutil/stb_codec.h"

namespace orvandel {

ImageFileError EncodeTga(const tImage& image, Bytes& file) {
  return EncodeWithStb(image, StbFormat::kTga, file);
}

}  // namespace orvandel
