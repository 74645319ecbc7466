#pragma once

#include <cstddef>

#include "image/image_view.h"
#include "platform/image_ptr.h"

namespace orvandel::bench {

/// The pixels of an image in the shape engine's words.
inline ImageView8 ViewOf(const tImage& image) {
  const std::ptrdiff_t stride = image.height > 1 ? image.row[1] - image.row[0] : image.width;
  return {image.row[0], image.width, image.height, stride};
}

}  // namespace orvandel::bench
